#pragma once

#include "model/subtitles.h"

#include <cstdint>
#include <optional>
#include <string>

/// What `optShow` and `optPosition` choose between.
enum class DisplayMode { View, Position };

/// New texts for the two subtitle boxes; a box without one stays as it is.
struct DisplayTexts {
    std::optional<std::string> subtitle;
    std::optional<std::string> next;
};

/// Walks through the titles while the media plays: which title is current, and
/// whether it is on the screen. It looks titles up on seeks only; a tick compares
/// the position with the cached times of the current title.
class DisplayWalker {
  public:
    enum class Step { None, Appeared, Ended };

    explicit DisplayWalker(const SUBTITLES& titles)
        : m_titles(&titles) {}

    /// Others to walk through; they are to be looked up anew.
    void Titles(const SUBTITLES& titles) { m_titles = &titles; }

    std::int32_t CurrentTitle() const { return m_currentTitle; }
    double CurrentStart() const { return m_currentStart; }
    double CurrentEnd() const { return m_currentEnd; }
    bool TitleShown() const { return m_titleShown; }

    DisplayTexts LocateCurrentTitle(double position, DisplayMode mode);
    /// View mode, right after the look-up: the current title is on at the position.
    bool IsOn(double position) const;
    /// After a seek: true when a title was shown, whose text must go.
    bool TakeDown();
    /// View mode: at most one title appears or ends.
    Step Tick(double position);
    /// Positioning: the current title has its times; on to the next.
    DisplayTexts Advance();
    /// Positioning: another title is placed next; kept within the list.
    DisplayTexts Choose(std::int32_t title);

  private:
    DisplayTexts CurrentAndNext() const;
    void CacheTimes();

    const SUBTITLES* m_titles;
    std::int32_t m_currentTitle = 1;
    double m_currentStart = 0;
    double m_currentEnd = 0;
    bool m_titleShown = false;
};

/// How many timer ticks lie in the time since the last one; at least one. Ticks
/// that a busy thread skipped are made up for, so that no title is left out.
std::int32_t TicksDue(std::int64_t elapsedMilliseconds, std::int32_t interval);
