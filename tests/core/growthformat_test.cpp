#include "formattesting.h"

#include <gtest/gtest.h>

namespace {

// Sanitizers see every byte many times; quadratic work would show in less, too.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t Size = 2'000'000;
#else
constexpr std::size_t Size = 20'000'000;
#endif

/// Texts that a reader which goes back, or rebuilds what it has, would never
/// finish: read within the test's patience only in one pass.
struct Row {
    const char* name;
    const char* head;
    const char* body;
    const char* tail;
    std::int32_t titles;
};

class Growth : public testing::TestWithParam<Row> {};

TEST_P(Growth, IsLinear) {
    const Row& row = GetParam();
    const std::string_view body(row.body,
                                row.body[0] == '\0' ? 1 : std::string_view(row.body).size());
    std::string text = row.head;
    text.reserve(Size + 100);
    while (text.size() < Size)
        text += body;
    text += row.tail;
    const Loaded loaded = LoadText(row.name, text);
    if (row.titles >= 0) {
        EXPECT_EQ(loaded.titles.Count(), row.titles);
    } else {
        EXPECT_GT(loaded.titles.Count(), static_cast<std::int32_t>(Size / 40));
    }
}

constexpr const char* Block = "1\r\n00:00:01,000 --> 00:00:02,000\r\n";
constexpr const char* Body = "<BODY>\r\n";

INSTANTIATE_TEST_SUITE_P(
    Rows, Growth,
    testing::Values(
        Row{"bars.sub", "{1}{2}", "|", "", 1}, Row{"italics.sub", "{1}{2}", "{y:i}", "|", 1},
        Row{"ends.sub", "{1}{2}", "{y}", "|", 1}, Row{"formed.sub", "{1}{2}", "{y{y}:i}", "|", 1},
        Row{"nested.sub", "{1}{2}", "{{y}y}", "|", 1},
        Row{"codesandbars.sub", "{1}{2}", "{y:b}|{y}", "", 1}, Row{"braces.sub", "{", "{", "", 1},
        Row{"nul.sub", "{1}{2}", "\0", "", 1}, Row{"digits.sub", "{", "9", "}", 1},
        Row{"blanks.sub", "{1}{2}", " ", "", 1}, Row{"tiny.sub", "", "{1}{2}a\n", "", -1},
        Row{"italics.srt", Block, "{y:i}", "", 1}, Row{"ends.srt", Block, "{y}", "", 1},
        Row{"onelines.srt", Block, "a\n", "", 1}, Row{"returns.srt", Block, "a\r", "", 1},
        Row{"codes.srt", Block, "{y:b}x{y}\r\n", "", 1}, Row{"nul.srt", Block, "\0", "", 1},
        Row{"digits.srt", "", "9", "", 0}, Row{"zeros.srt", "", "0", "\r\n", 0},
        Row{"tags.srt", Block, "<i>", "", 1}, Row{"tiny.srt", "", "1\n\nabcde\n\n", "", -1},
        Row{"breaks.smi", Body, "a<br>", "\r\n</body>", 1},
        Row{"open.smi", Body, "<", "\r\n</body>", 0},
        Row{"tags.smi", Body, "<i>", "\r\n</body>", 1},
        Row{"lines.smi", Body, "<\r\n", "</body>", 0},
        Row{"words.smi", Body, "a\r\n", "</body>", 1},
        Row{"empty.smi", Body, "\r\n", "a</body>", 1}, Row{"nul.smi", Body, "\0", "\r\n</body>", 1},
        Row{"head.smi", "", "<bod\r\n", "", 0},
        Row{"blanks.smi", Body, "a <br>  ", "\r\n</body>", 1},
        Row{"classes.smi", Body, "<P class=a>", "\r\n</body>", 0},
        Row{"foot.smi", Body, "</body>\r\n", "", 0},
        Row{"tiny.smi", Body, "<sync start=1>a\r\n", "", -1}, Row{"marks.txt", "", "{", "", 1}),
    [](const auto& row) {
        std::string name = row.param.name;
        name[name.find('.')] = '_';
        return name;
    });

/// What was read is written in one pass too.
TEST(Growth, OfWritingIsLinear) {
    for (const char* body : {"<i>", "<", "<b<i>>", "\r\n", "{y}", "</i"}) {
        std::string text;
        while (text.size() < Size)
            text += body;
        const SUBTITLES titles = ListOf({{1, 2, text}});
        for (const Format& format : Formats()) {
            std::string out;
            format.write(titles, 25, {}, out);
            EXPECT_GE(out.size(), 20U);
        }
    }
}

} // namespace
