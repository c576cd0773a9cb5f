#include "editing/search.h"

#include <algorithm>
#include <vector>

namespace {

/// Two blanks in a row give an empty word.
std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::size_t blank = text.find(' '); blank != std::string_view::npos;
         blank = text.find(' ')) {
        words.push_back(text.substr(0, blank));
        text.remove_prefix(blank + 1);
    }
    words.push_back(text);
    return words;
}

/// An empty word is in every text but the empty one.
bool Contains(std::string_view text, std::string_view word) {
    return !text.empty() && text.find(word) != std::string_view::npos;
}

bool Matches(std::string_view text, const std::vector<std::string_view>& words, FindMode mode) {
    // A word that is missing ends the test in either mode, so any word means the first one.
    if (mode == FindMode::AnyWord)
        return Contains(text, words.front());
    return std::all_of(words.begin(), words.end(),
                       [&](std::string_view word) { return Contains(text, word); });
}

} // namespace

TitleSearch::Result TitleSearch::First(const SUBTITLES& titles, std::string_view text,
                                       FindMode mode) {
    return Search(titles, 0, text, mode);
}

TitleSearch::Result TitleSearch::Next(const SUBTITLES& titles, std::string_view text,
                                      FindMode mode) {
    return Search(titles, m_index + 1, text, mode);
}

TitleSearch::Result TitleSearch::Search(const SUBTITLES& titles, std::int32_t start,
                                        std::string_view text, FindMode mode) {
    if (text.empty())
        return m_index > titles.Count() ? Result::NoMatch : Result::Nothing;
    const std::string wanted = m_lowerCase(text);
    const std::vector<std::string_view> words =
        mode == FindMode::ExactPhrase ? std::vector<std::string_view>{wanted} : Words(wanted);
    for (m_index = start + 1; m_index <= titles.Count(); ++m_index) {
        if (Matches(m_lowerCase(titles.Text(m_index)), words, mode))
            return Result::Found;
    }
    return Result::NoMatch;
}
