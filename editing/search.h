#pragma once

#include "model/subtitles.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

enum class FindMode { AnyWord, ExactPhrase, AllWords };

/// Looks for words in the texts of titles, markup included, in any letter case,
/// and remembers where it stopped. It never wraps round.
class TitleSearch {
  public:
    using LowerCase = std::function<std::string(std::string_view)>;

    enum class Result {
        /// There was nothing to look for.
        Nothing,
        Found,
        NoMatch,
    };

    /// How letters become lower case, which no toolkit-free library knows well.
    explicit TitleSearch(LowerCase lowerCase)
        : m_lowerCase(std::move(lowerCase)) {}

    Result First(const SUBTITLES& titles, std::string_view text, FindMode mode);
    /// Goes on two titles after the last match: the title right after it is not looked at.
    Result Next(const SUBTITLES& titles, std::string_view text, FindMode mode);

    /// The title found; past the last one after a search without match.
    std::int32_t Index() const { return m_index; }

  private:
    Result Search(const SUBTITLES& titles, std::int32_t start, std::string_view text,
                  FindMode mode);

    LowerCase m_lowerCase;
    std::int32_t m_index = 0;
};
