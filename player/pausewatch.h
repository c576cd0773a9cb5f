#pragma once

#include <optional>

/// Whether libmpv pauses as it was told. It also pauses by itself, at the end of the file,
/// and its reports of that may be older than the last wish; so a report only raises a
/// doubt, and what libmpv answers to a question settles it.
class PauseWatch {
  public:
    enum class Finding { AsWished, EndOfFile, Overtaken };

    /// What libmpv is to be told; nothing when it was told the same the last time.
    std::optional<bool> Tell(bool paused);
    /// libmpv was told, whether it was told the same before or not.
    void Told(bool paused) { m_told = paused; }

    /// A report of libmpv's own.
    void Reported(bool paused);
    /// Something happened after which libmpv may pause by itself.
    void Doubt() { m_doubted = true; }
    /// true: ask libmpv whether the file has ended and whether it pauses, in this
    /// order. Only while playback is wanted and nothing is in its way is there a doubt.
    bool Ask(bool moving);
    void AnsweredEnd(bool ended) { m_ended = ended; }
    Finding AnsweredPause(bool paused, bool moving);

  private:
    bool m_told = true;
    bool m_reported = true;
    bool m_doubted = false;
    bool m_ended = false;
};
