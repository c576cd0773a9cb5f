#pragma once

#include "model/subtitles.h"

#include <cstdint>
#include <string>
#include <vector>

/// Titles that a person has put where they start. It follows the list's changes: a title
/// that starts elsewhere since, or that cannot be told from others any more, is left out.
class KnownStarts {
  public:
    struct Known {
        std::int32_t title = 0;
        double start = 0;
        /// Where it started before, among titles that stand as they did then; where others
        /// were moved since, the start itself.
        double was = 0;
        std::string text;
    };

    /// The title starts where a person wants it, who took it from `was`. Without such a title
    /// nothing happens.
    void Add(const SUBTITLES& titles, std::int32_t title, double was);
    void Clear() { m_known.clear(); }
    /// The titles have changed in this way.
    void Follow(const Change& change, const SUBTITLES& titles);
    /// Ascending by their numbers.
    const std::vector<Known>& All() const { return m_known; }

  private:
    std::vector<Known> m_known;
};
