#include "editing/search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

namespace {

using Result = TitleSearch::Result;

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

SUBTITLES Titles(std::initializer_list<const char*> texts) {
    SUBTITLES titles;
    for (const char* text : texts)
        titles.Add(titles.Count(), titles.Count() + 1, text);
    return titles;
}

TEST(Search, NextPassesOverTheTitleRightAfterAMatch) {
    const SUBTITLES titles = Titles({"one", "a word", "word two", "four", "five"});
    TitleSearch search(Lower);
    EXPECT_EQ(search.First(titles, "word", FindMode::AllWords), Result::Found);
    EXPECT_EQ(search.Index(), 2);
    EXPECT_EQ(search.Next(titles, "word", FindMode::AllWords), Result::NoMatch);
    EXPECT_EQ(search.Index(), 6);
}

TEST(Search, NextFindsFurtherMatches) {
    const SUBTITLES titles = Titles({"word", "x", "word", "x", "x", "word"});
    TitleSearch search(Lower);
    search.First(titles, "word", FindMode::AllWords);
    EXPECT_EQ(search.Next(titles, "word", FindMode::AllWords), Result::Found);
    EXPECT_EQ(search.Index(), 3);
    EXPECT_EQ(search.Next(titles, "word", FindMode::AllWords), Result::Found);
    EXPECT_EQ(search.Index(), 6);
}

struct ModeRow {
    FindMode mode;
    const char* wanted;
    const char* text;
    Result expected;
};

class Modes : public testing::TestWithParam<ModeRow> {};

TEST_P(Modes, Match) {
    const SUBTITLES titles = Titles({GetParam().text});
    TitleSearch search(Lower);
    EXPECT_EQ(search.First(titles, GetParam().wanted, GetParam().mode), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Modes,
    testing::Values(ModeRow{FindMode::AnyWord, "cat dog", "only a dog", Result::NoMatch},
                    ModeRow{FindMode::AnyWord, "cat dog", "only a cat", Result::Found},
                    ModeRow{FindMode::AllWords, "cat  dog", "dog and cat", Result::Found},
                    ModeRow{FindMode::AllWords, "cat dog", "only a cat", Result::NoMatch},
                    ModeRow{FindMode::AllWords, "cat dog ", "", Result::NoMatch},
                    ModeRow{FindMode::AllWords, " ", "any", Result::Found},
                    ModeRow{FindMode::AllWords, " ", "", Result::NoMatch},
                    ModeRow{FindMode::ExactPhrase, "Hello", "say hello there", Result::Found},
                    ModeRow{FindMode::ExactPhrase, "hello  there", "hello there", Result::NoMatch},
                    ModeRow{FindMode::ExactPhrase, "LO TH", "Hello there", Result::Found},
                    ModeRow{FindMode::AllWords, "I>", "<i>so</i>", Result::Found}));

TEST(Search, NothingWantedTellsOfTheLastFailureOnly) {
    const SUBTITLES titles = Titles({"one", "two"});
    TitleSearch search(Lower);
    EXPECT_EQ(search.First(titles, "", FindMode::AllWords), Result::Nothing);
    EXPECT_EQ(search.First(titles, "two", FindMode::AllWords), Result::Found);
    EXPECT_EQ(search.Next(titles, "", FindMode::AllWords), Result::Nothing);
    EXPECT_EQ(search.Next(titles, "one", FindMode::AllWords), Result::NoMatch);
    EXPECT_EQ(search.Next(titles, "", FindMode::AllWords), Result::NoMatch);
}

TEST(Search, AnEmptyListHasNoMatch) {
    TitleSearch search(Lower);
    EXPECT_EQ(search.First(SUBTITLES(), "word", FindMode::AnyWord), Result::NoMatch);
}

} // namespace
