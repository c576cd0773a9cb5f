#include "formattesting.h"
#include "worsttexts.h"

#include <gtest/gtest.h>

namespace {

// Sanitizers see every byte many times; quadratic work would show in less, too.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t Size = 2'000'000;
#else
constexpr std::size_t Size = 20'000'000;
#endif
/// For each of the formats.
constexpr std::size_t WriteSize = 1'000'000;

class LargeTexts : public testing::TestWithParam<WorstText> {};

/// In quadratic time they would not come to their end before the test's time is over.
TEST_P(LargeTexts, AreReadToTheirEnd) {
    const WorstText& worst = GetParam();
    const Loaded loaded = LoadText(worst.name, TextOf(worst, Size));
    if (worst.titles >= 0) {
        EXPECT_EQ(loaded.titles.Count(), worst.titles);
    } else {
        EXPECT_GT(loaded.titles.Count(), static_cast<std::int32_t>(Size / 40));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, LargeTexts, testing::ValuesIn(WorstTexts), [](const auto& row) {
    std::string name = row.param.name;
    name[name.find('.')] = '_';
    return name;
});

TEST(LargeText, IsWrittenInEveryFormat) {
    for (const char* body : WorstToWrite) {
        const SUBTITLES titles = ListOf({{1, 2, Repeated(body, WriteSize)}});
        for (const Format& format : Formats()) {
            std::string out;
            format.write(titles, 25, {}, out);
            EXPECT_GE(out.size(), 10U);
        }
    }
}

} // namespace
