#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

/// Which file is being opened, and how far that has come. libmpv reports on one file
/// after the other, late and in pieces; what belongs to a file that is no longer wanted is
/// told apart here. It has no thread and no time of its own.
class Loading {
  public:
    using Moment = std::chrono::steady_clock::time_point;
    enum class End { OfAnother, BeforeItWasOpen, WhileOpen };

    /// A file is asked for. The number is the request's, which its reply carries.
    std::uint64_t Ask(Moment now);
    /// No file is wanted any more.
    void Drop();

    /// libmpv's reply to a request: the entry of its playlist, nothing when it refused.
    /// true: the file that is asked for cannot be opened.
    bool Replied(std::uint64_t request, std::optional<std::int64_t> entry);
    void Started(std::int64_t entry);
    void Loaded();
    End Ended(std::int64_t entry) const;
    /// The answer is given; a file that cannot be opened has no entry.
    void Answer(bool ready);

    /// The file is open, and what it holds can be asked now.
    bool IsLoaded() const { return m_stage == Stage::Loaded; }
    /// The answer is still to come, at the latest at the deadline.
    bool Pending() const { return m_stage != Stage::Idle && m_stage != Stage::Done; }
    Moment Deadline() const { return m_deadline; }
    bool Overdue(Moment now) const { return Pending() && now >= m_deadline; }

  private:
    enum class Stage { Idle, Asked, Started, Loaded, Done };

    Stage m_stage = Stage::Idle;
    std::uint64_t m_request = 0;
    std::optional<std::int64_t> m_entry;
    Moment m_deadline;
};
