#pragma once

#include "formats/format.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// What the readers share.

/// Tells the progress hook, at most a few hundred times per file, how far into
/// the text a reader is.
class ProgressMeter {
  public:
    ProgressMeter(const Progress& progress, std::size_t size)
        : m_progress(progress)
        , m_size(size)
        , m_step(std::max(size / 200, SmallestStep))
        , m_next(progress ? m_step : NoStep) {}

    /// False when the reading is to end.
    bool Continue(std::size_t position) {
        if (position < m_next)
            return true;
        m_next = position + m_step;
        return m_progress(static_cast<double>(position) / static_cast<double>(m_size));
    }

  private:
    static constexpr std::size_t SmallestStep = 65536;
    static constexpr std::size_t NoStep = static_cast<std::size_t>(-1);

    const Progress& m_progress;
    std::size_t m_size;
    std::size_t m_step;
    std::size_t m_next;
};

/// Of what is longer, the hours cannot be told (seconds).
inline constexpr double LongestTime = 32767.0 * 3600;

/// The first title with a time that cannot be shown; 0 when there is none.
std::int32_t FirstBeyond(const SUBTITLES& titles);

/// Makes room for a long document once its first titles tell how long titles are.
class RoomMaker {
  public:
    RoomMaker(SUBTITLES& titles, std::size_t size)
        : m_titles(titles)
        , m_size(size) {}

    /// Call with the offset after each title.
    void Added(std::size_t position) {
        if (++m_added != Sample)
            return;
        const double perByte =
            Sample * Margin / static_cast<double>(std::max<std::size_t>(position, 1));
        // A file that begins with tiny titles and goes on otherwise must not claim
        // more memory for them than it has bytes itself.
        const double most = static_cast<double>(m_size) / TitleBytes;
        m_titles.Reserve(static_cast<std::int32_t>(
            std::min({perByte * static_cast<double>(m_size), most, LargestCount})));
    }

  private:
    static constexpr std::int32_t Sample = 1000;
    static constexpr double Margin = 1.03;
    static constexpr double TitleBytes = 48;
    static constexpr double LargestCount = 100'000'000;

    SUBTITLES& m_titles;
    std::size_t m_size;
    std::int32_t m_added = 0;
};

/// Blanks alone, not tabs.
inline std::string_view TrimRight(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}
inline std::string_view Trim(std::string_view text) {
    if (text.starts_with(' '))
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return TrimRight(text);
}

/// As `Val`, quick where the text begins with a short whole number.
double LeadingNumber(std::string_view text);
