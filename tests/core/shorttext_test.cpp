#include "base/shorttext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

std::string Times(int count, const std::string& part) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += part;
    return text;
}

struct Row {
    std::string text;
    std::string shown;
};

class Short : public testing::TestWithParam<Row> {};

TEST_P(Short, IsWhatCanBeLookedAt) {
    EXPECT_EQ(ShortText(GetParam().text), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Short,
    testing::Values(Row{"", ""}, Row{"Hello\r\nyou", "Hello\r\nyou"},
                    Row{Times(2000, "x"), Times(2000, "x")},
                    Row{Times(2001, "x"), Times(2000, "x") + "..."},
                    Row{Times(2001, "\xC3\xA9"), Times(2000, "\xC3\xA9") + "..."},
                    Row{Times(2000, "\xC3\xA9"), Times(2000, "\xC3\xA9")},
                    Row{Times(2001, "x") + "\r\ny", Times(2000, "x") + "...\r\ny"},
                    Row{Times(199, "a\r\n") + "b", Times(199, "a\r\n") + "b"},
                    Row{Times(200, "a\r\n"), Times(200, "a\r\n")},
                    Row{Times(201, "a\r\n"), Times(200, "a\r\n") + "..."},
                    Row{Times(300, "\n"), Times(200, "\n") + "..."},
                    Row{"e" + Times(100'000, "\xCC\x81"), "e" + Times(1999, "\xCC\x81") + "..."},
                    Row{Times(3000, "\xFF"), Times(2000, "\xFF") + "..."}));

TEST(ShortText, IsAsShortAsIsAskedFor) {
    const ShownText most{.lines = 2, .characters = 3};
    EXPECT_EQ(ShortText("abcd\r\nabc\r\nabc", most), "abc...\r\nabc\r\n...");
    EXPECT_EQ(ShortText("abc\r\nabc", most), "abc\r\nabc");
    EXPECT_EQ(ShortText("\n\n\n", most), "\n\n...");
}

TEST(ShortText, OfMillionsIsShort) {
    EXPECT_LE(ShortText(Times(5'000'000, "x")).size(), 2003U);
    EXPECT_LE(ShortText(Times(1'000'000, "\r\n")).size(), 403U);
    const std::string most = ShortText(Times(1000, Times(5000, "\xF0\x9F\x98\x80") + "\r\n"));
    EXPECT_LE(most.size(), 200U * (2000 * 4 + 5) + 3);
}

} // namespace
