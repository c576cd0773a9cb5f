#include "tests/core/formattesting.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr double FramesPerSecond = 25;
constexpr double Late = 2.4;
constexpr double Stretch = 25 / 23.976;
/// A written time is off by half a millisecond at most.
constexpr double Rounding = 0.00051;

const fs::path Folder = SAMPLES_FOLDER;

struct Sample {
    SUBTITLES titles;
    FileStyle style;

    explicit Sample(const std::string& name) {
        LoadHooks hooks;
        hooks.askFrameRate = [](std::optional<double>) {
            return FramesPerSecond;
        };
        const LoadResult result = LoadTitles(Folder / name, "windows-1252", titles, style, hooks);
        EXPECT_EQ(result.outcome, LoadOutcome::Complete) << name;
        EXPECT_EQ(result.message, "") << name;
    }
};

/// The words alone: no tags, and line breaks and blanks all alike.
std::string Words(std::string text) {
    for (const std::string tag : {"<i>", "</i>"}) {
        for (auto at = text.find(tag); at != std::string::npos; at = text.find(tag)) {
            text.erase(at, tag.size());
        }
    }
    std::string words;
    bool gap = false;
    for (const char c : text) {
        if (c == ' ' || c == '\r' || c == '\n') {
            gap = true;
            continue;
        }
        if (gap && !words.empty()) {
            words += ' ';
        }
        gap = false;
        words += c;
    }
    return words;
}

struct OffBy {
    const char* file;
    double factor;
    double offset;
};

class SampleTimes : public testing::TestWithParam<OffBy> {};

TEST_P(SampleTimes, AreOffByTheKnownAmountAndTheWordsAreTheSame) {
    const OffBy& off = GetParam();
    const Sample right("sample.srt");
    const Sample other(off.file);
    ASSERT_EQ(right.titles.Count(), 14);
    ASSERT_EQ(other.titles.Count(), right.titles.Count());
    for (int i = 1; i <= right.titles.Count(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(Words(other.titles.Text(i)), Words(right.titles.Text(i)));
        EXPECT_NEAR(other.titles.StartTime(i), right.titles.StartTime(i) * off.factor + off.offset,
                    Rounding);
        EXPECT_NEAR(other.titles.EndTime(i), right.titles.EndTime(i) * off.factor + off.offset,
                    Rounding);
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleTimes,
                         testing::Values(OffBy{"sample.smi", 1, 0}, OffBy{"sample.sub", 1, 0},
                                         OffBy{"sample-late.srt", 1, Late},
                                         OffBy{"sample-late.smi", 1, Late},
                                         OffBy{"sample-late.sub", 1, Late},
                                         OffBy{"sample-stretched.srt", Stretch, 0}),
                         [](const auto& row) {
                             std::string name;
                             for (const char* c = row.param.file; *c != '\0'; ++c) {
                                 name += std::isalnum(static_cast<unsigned char>(*c)) ? *c : '_';
                             }
                             return name;
                         });

TEST(Samples, RisingTimesOnTheFramesOfTheFilm) {
    const Sample sample("sample.srt");
    double previous = 0;
    for (int i = 1; i <= sample.titles.Count(); ++i) {
        for (const double time : {sample.titles.StartTime(i), sample.titles.EndTime(i)}) {
            EXPECT_GE(time, previous);
            EXPECT_NEAR(time * FramesPerSecond, std::round(time * FramesPerSecond), 1e-6);
            previous = time;
        }
    }
}

struct Rewritten {
    const char* from;
    const char* as;
};

class SampleBytes : public testing::TestWithParam<Rewritten> {};

TEST_P(SampleBytes, AreThoseThatSavingWrites) {
    const Sample sample(GetParam().from);
    SaveHooks hooks;
    hooks.askFrameRate = [] {
        return FramesPerSecond;
    };
    EXPECT_EQ(SavedText(GetParam().as, TitlesOf(sample.titles), {}, hooks),
              FileText(Folder / GetParam().as));
}

INSTANTIATE_TEST_SUITE_P(
    Samples, SampleBytes,
    testing::Values(Rewritten{"sample.sub", "sample.srt"}, Rewritten{"sample.sub", "sample.smi"},
                    Rewritten{"sample.sub", "sample.sub"},
                    Rewritten{"sample-late.sub", "sample-late.srt"},
                    Rewritten{"sample-late.sub", "sample-late.smi"},
                    Rewritten{"sample-late.sub", "sample-late.sub"},
                    Rewritten{"sample-stretched.srt", "sample-stretched.srt"}));

TEST(Samples, TogetherUnderThreeMegabytes) {
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::directory_iterator(Folder)) {
        bytes += entry.file_size();
    }
    EXPECT_LT(bytes, 3'000'000U);
}

} // namespace
