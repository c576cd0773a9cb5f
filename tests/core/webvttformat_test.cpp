#include "formats/webvtt.h"

#include "formattesting.h"

#include <gtest/gtest.h>

namespace {

using Titles = std::vector<TestTitle>;
constexpr const char* Corrupt = "File is corrupt or not in WebVTT format.";

struct ReadRow {
    const char* what;
    std::string_view file;
    Titles titles;
    const char* message = "";
};
std::ostream& operator<<(std::ostream& out, const ReadRow& row) {
    return out << row.what;
}

class WebVttRead : public testing::TestWithParam<ReadRow> {};

TEST_P(WebVttRead, Gives) {
    const Loaded loaded = LoadText("x.vtt", GetParam().file);
    EXPECT_EQ(loaded.Titles(), GetParam().titles);
    EXPECT_EQ(loaded.result.message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, WebVttRead,
    testing::Values(
        ReadRow{"nothing", "", {}, Corrupt}, ReadRow{"no signature", "WEBVTTX\n\n", {}, Corrupt},
        ReadRow{"a signature alone", "WEBVTT\tx", {}},
        ReadRow{"times of all forms",
                "WEBVTT\n\n00:01.500 --> 00:00:02.250\nA\n\n100:00:00.000 --> 100:59:59.999\nB\n",
                {{1.5, 2.25, "A"}, {360000, 363599.999, "B"}}},
        ReadRow{"settings and identifiers",
                "WEBVTT\n\nid\n00:01.000-->00:02.000 line:0\nA\nB\n\n\n",
                {{1, 2, "A\r\nB"}}},
        ReadRow{"blocks that are no cues",
                "WEBVTT x\nhead\n\nNOTE\n-- >\n\nSTYLE\na\n\n00:01.000 --> 00:02.000\nA\n\nNOTE b",
                {{1, 2, "A"}}},
        ReadRow{"entities and tags",
                "WEBVTT\n\n00:01.000 --> 00:02.000\n<v F&amp;B>&lt;a&gt;&#65;&#x42; &x; "
                "&lrm;&rlm;&nbsp;</v>\n<i>b</i>\n",
                {{1, 2, "<v F&B><a>AB &x; \xE2\x80\x8E\xE2\x80\x8F\xC2\xA0</v>\r\n<i>b</i>"}}},
        ReadRow{
            "entities by their names",
            "WEBVTT\n\n00:01.000 --> 00:02.000\n&quot;&apos;&hellip;&ndash;&mdash;&lsquo;&rsquo;"
            "&ldquo;&rdquo;&eacute;&Eacute;&euro;&frac34;\n",
            {{1, 2,
              "\"'\xE2\x80\xA6\xE2\x80\x93\xE2\x80\x94\xE2\x80\x98\xE2\x80\x99\xE2\x80\x9C"
              "\xE2\x80\x9D\xC3\xA9\xC3\x89\xE2\x82\xAC\xC2\xBE"}}},
        ReadRow{"names that are none, or do not end",
                "WEBVTT\n\n00:01.000 --> 00:02.000\n&QUOT;&quot &eacute&hellips;&;&\n",
                {{1, 2, "&QUOT;&quot &eacute&hellips;&;&"}}},
        ReadRow{"numbers that are no characters",
                "WEBVTT\n\n00:01.000 --> 00:02.000\n&#;&#0;&#xD800;&#x110000;&#99999999999;&#\n",
                {{1, 2, "&#;&#0;&#xD800;&#x110000;&#99999999999;&#"}}},
        ReadRow{"times that are none, and what follows",
                "WEBVTT\n\n00:01 -> 2\nA\n\n1 --> 2\nB\n\n00:03.000 --> 00:04.000\nC\n",
                {{3, 4, "C"}},
                Corrupt},
        ReadRow{
            "arrows alone", "WEBVTT\n\n-->\n\n --> 00:01.000\n\n00:01.000 --> \n", {}, Corrupt}));

TEST(WebVttRead, KeepsWhatItDidNotUnderstand) {
    const std::string file = "WEBVTT\n\n1 --> 2\nB\n\n00:03.000 --> 00:04.000\nC\n\n7 --> x\nD\n\n"
                             "00:05.000 --> 00:06.000\nE\n";
    Loaded loaded = LoadText("x.vtt", file);
    EXPECT_EQ(loaded.result.outcome, LoadOutcome::Corrupt);
    std::string out;
    WriteFile(*loaded.result.format, loaded.titles, 25, loaded.style, out);
    EXPECT_EQ(out, file);
}

struct TextRow {
    const char* text;
    const char* cue;
};

class WebVttText : public testing::TestWithParam<TextRow> {};

TEST_P(WebVttText, IsWritten) {
    std::string cue;
    TextToWebVtt(GetParam().text, "\n", cue);
    EXPECT_EQ(cue, GetParam().cue);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, WebVttText,
    testing::Values(TextRow{"", ""}, TextRow{"a\r\nb", "a\nb"}, TextRow{"a\rb\nc", "a\nb\nc"},
                    TextRow{"\r\n\r\na\r\n\r\n\r\nb\r\n", "a\n \n \nb"}, TextRow{"\r\n", ""},
                    TextRow{"a & b &amp;", "a &amp; b &amp;amp;"},
                    TextRow{"<i>a</i> <v Bob>b</v> <c.x>", "<i>a</i> <v Bob>b</v> <c.x>"},
                    TextRow{"a < b <font x> <I> <i", "a &lt; b &lt;font x> &lt;I> &lt;i"},
                    TextRow{"<00:01.000>a<1>", "<00:01.000>a&lt;1>"},
                    TextRow{"a --> b ->", "a --&gt; b ->"}, TextRow{"-->", "--&gt;"}));

TEST(WebVttText, OfOtherFormatsLosesItsTags) {
    EXPECT_EQ(WebVttPlainText("<v Bob>a<i.x>b</i></v> <b>c</b> <00:01.000><u>d</u> <e> <"),
              "a<i>b</i> <b>c</b> d <e> <");
}

struct MoveRow {
    double start;
    double end;
    const char* cue;
};

class InnerTimes : public testing::TestWithParam<MoveRow> {};

TEST_P(InnerTimes, MoveAlong) {
    Loaded loaded =
        LoadText("x.vtt", "WEBVTT\n\n00:10.000 --> 00:20.000\na<00:12.000>b<0:00:15.5>c\n<9>");
    loaded.titles.SetTimes(1, GetParam().start, GetParam().end);
    std::string out;
    WriteFile(*loaded.result.format, loaded.titles, 25, loaded.style, out);
    EXPECT_EQ(out.substr(out.find('a')), GetParam().cue);
}

INSTANTIATE_TEST_SUITE_P(Rows, InnerTimes,
                         testing::Values(MoveRow{10, 20, "a<00:12.000>b<0:00:15.5>c\n<9>"},
                                         MoveRow{11.5, 21.5, "a<00:13.500>b<0:00:17.0>c\n<9>"},
                                         MoveRow{20, 40, "a<00:24.000>b<0:00:31.0>c\n<9>"},
                                         MoveRow{3600, 3610, "a<01:00:02.000>b<1:00:05.5>c\n<9>"},
                                         MoveRow{-15, -5, "a<00:00.000>b<0:00:00.0>c\n<9>"}));

TEST(InnerTimes, MoveInATextThatWasChanged) {
    Loaded loaded = LoadText("x.vtt", "WEBVTT\n\n00:10.000 --> 00:20.000\na<00:12.000>b");
    loaded.titles.SetTimes(1, 11, 21);
    loaded.titles.Text(1, "x<00:12.000>y & z");
    std::string out;
    WriteFile(*loaded.result.format, loaded.titles, 25, loaded.style, out);
    EXPECT_EQ(out, "WEBVTT\n\n00:11.000 --> 00:21.000\nx<00:13.000>y &amp; z");
}

TEST(WebVttWrite, BeginsANewFile) {
    EXPECT_EQ(SavedText("x.vtt", {{1, 2.5, "a\r\n<i>b</i>"}, {3600, 360000, "c"}}),
              "WEBVTT\r\n\r\n00:00:01.000 --> 00:00:02.500\r\na\r\n<i>b</i>\r\n\r\n"
              "01:00:00.000 --> 100:00:00.000\r\nc\r\n");
    EXPECT_EQ(SavedText("x.vtt", {}), "WEBVTT\r\n\r\n");
}

TEST(WebVttWrite, IsUtf8WhateverAnotherFormatsFileWas) {
    FileStyle style;
    style.encoding = FileStyle::Encoding::CodePage;
    EXPECT_NE(SavedText("x.vtt", {{1, 2, "\xC3\xA9"}}, style).find("\xC3\xA9"), std::string::npos);
    EXPECT_NE(SavedText("x.srt", {{1, 2, "\xC3\xA9"}}, style).find("\xE9"), std::string::npos);
}

TEST(NotKept, SaysWhatAnotherFormatLacks) {
    const Loaded loaded = LoadText("x.vtt", "WEBVTT\n\n1\n00:01.000 --> 00:02.000\nA\n\n"
                                            "00:03.000 --> 00:04.000 line:0\nB\n\n"
                                            "00:05.000 --> 00:06.000\n<c.x>C</c>\n");
    const auto said = [&](const char* name) {
        return NotKept(*FormatByName(name), loaded.titles, loaded.style);
    };
    EXPECT_EQ(said("x.srt"), "Positions and styles of 2 titles are not kept in SubRip.");
    EXPECT_EQ(said("x.sub"), "Positions and styles of 2 titles are not kept in MicroDVD.");
    EXPECT_EQ(said("x.vtt"), "");
    EXPECT_EQ(NotKept(*FormatByName("x.srt"), ListOf({{1, 2, "<c>a</c>"}}), {}), "");
    SUBTITLES one = loaded.titles;
    one.DeleteAll({1, 2});
    EXPECT_EQ(NotKept(*FormatByName("x.srt"), one, loaded.style),
              "Positions and styles of 1 title are not kept in SubRip.");
}

} // namespace
