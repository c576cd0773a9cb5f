#include "formats/linereader.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(std::string_view text) {
    Lines lines;
    for (LineReader reader(text); !reader.AtEnd();)
        lines.emplace_back(reader.Next());
    return lines;
}

TEST(LineReader, EndsLinesInAllThreeWays) {
    EXPECT_EQ(LinesOf(""), Lines{});
    EXPECT_EQ(LinesOf("a"), Lines{"a"});
    EXPECT_EQ(LinesOf("a\nb\rc\r\nd"), (Lines{"a", "b", "c", "d"}));
    EXPECT_EQ(LinesOf("\n\r\r\n\n"), (Lines{"", "", "", ""}));
    EXPECT_EQ(LinesOf("a\r"), Lines{"a"});
}

TEST(LineReader, TellsWhichLinesCrLfEnded) {
    LineReader reader("a\r\nb\nc\rd\r\n");
    std::string told;
    while (!reader.AtEnd()) {
        reader.Next();
        told += reader.EndedByCrLf() ? 'y' : 'n';
    }
    EXPECT_EQ(told, "ynny");
}

TEST(LineReader, AgreesWithReadingByteByByte) {
    std::mt19937 random(11);
    for (int i = 0; i < 20'000; ++i) {
        std::string text;
        for (auto left = random() % 20; left > 0; --left)
            text += "\r\nab"[random() % 4];
        Lines expected;
        for (std::size_t at = 0; at < text.size();) {
            std::string line;
            while (at < text.size() && text[at] != '\r' && text[at] != '\n')
                line += text[at++];
            if (text.compare(at, 2, "\r\n") == 0)
                ++at;
            ++at;
            expected.push_back(line);
        }
        ASSERT_EQ(LinesOf(text), expected) << testing::PrintToString(text);
    }
}

} // namespace
