#include "formats/sami.h"
#include "formattesting.h"

#include <gtest/gtest.h>

namespace {

using Titles = std::vector<TestTitle>;
constexpr const char* Corrupt = "File is corrupt or not in SAMI format.";

struct ReadRow {
    const char* what;
    /// What stands after the line of the body tag.
    std::string body;
    Titles titles;
    const char* message = "";
};

class SamiRead : public testing::TestWithParam<ReadRow> {};

TEST_P(SamiRead, Gives) {
    const Loaded loaded = LoadText("x.smi", "<SAMI>\r\n<BODY>\r\n" + GetParam().body);
    EXPECT_EQ(loaded.Titles(), GetParam().titles) << GetParam().what;
    EXPECT_EQ(loaded.result.message, GetParam().message) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SamiRead,
    testing::Values(
        ReadRow{"a title over two lines and what ends it",
                "<SYNC Start=1000><P Class=ENCC>Hello<br>world\r\n"
                "<SYNC Start=4000><P Class=ENCC>&nbsp;\r\n</BODY>\r\n</SAMI>\r\n",
                {{1, 4, "Hello\r\nworld"}, {4, 14, "&nbsp;"}}},
        ReadRow{"a cleared screen is a title when another one follows",
                "<SYNC Start=1000><P>A\r\n<SYNC Start=4000><P>&nbsp;\r\n"
                "<SYNC Start=5000><P>B\r\n</BODY>\r\n",
                {{1, 4, "A"}, {4, 5, "&nbsp;"}, {5, 15, "B"}}},
        ReadRow{"a SYNC with a line break alone starts nothing",
                "<SYNC Start=0><P><br>\r\n<SYNC Start=1000><P>A\r\n<SYNC Start=2000><P><br>\r\n"
                "</BODY>\r\n",
                {{1, 2, "A"}}},
        ReadRow{"names in any case",
                "<sYNC START=1000><p>A\r\n<Sync start = 2500><P>\r\n</Body>",
                {{1, 2.5, "A"}}},
        ReadRow{
            "the last title lasts ten seconds", "<SYNC Start=1000><P>A</BODY>\r\n", {}, Corrupt},
        ReadRow{"the last title lasts ten seconds, its end on a line of its own",
                "<SYNC Start=1000><P>A\r\n</BODY>",
                {{1, 11, "A"}}},
        ReadRow{"text before any SYNC starts at 0",
                "A\r\n<SYNC Start=1000>\r\n</BODY>\r\n",
                {{0, 1, "A"}}},
        ReadRow{"text over three lines",
                "<SYNC Start=0>one\r\n  two  \r\n\r\nthree\r\n</BODY>\r\n",
                {{0, 10, "one two three"}}},
        ReadRow{"a tag over two lines", "<SYNC\r\nStart=1000><P>A\r\n</BODY>\r\n", {{1, 11, "A"}}},
        ReadRow{"a break before the next SYNC stays",
                "<SYNC Start=0>Hello<br>\r\n<SYNC Start=1000>\r\n</BODY>\r\n",
                {{0, 1, "Hello\r\n"}}},
        ReadRow{"italics are set off by blanks, bold is not",
                "<SYNC Start=0>a <i>b</i> <b>c</b> d\r\n</BODY>\r\n",
                {{0, 10, "a <i> b </i> <b>c</b>d"}}},
        ReadRow{"italics that begin a title are not",
                "<SYNC Start=0><i>b</i>\r\n</BODY>\r\n",
                {{0, 10, "<i>b </i> "}}},
        ReadRow{"capital italics are text",
                "<SYNC Start=0>a <I>b</I>\r\n</BODY>\r\n",
                {{0, 10, "a<I>b</I>"}}},
        ReadRow{"the blanks around a break go",
                "<SYNC Start=0>a <i>b</i><br> c\r\n</BODY>\r\n",
                {{0, 10, "a <i> b </i>\r\nc"}}},
        ReadRow{"other tags are text",
                "<SYNC Start=0><font color=red>a</font>/\r\n</BODY>\r\n",
                {{0, 10, "<font color=red>a</font>/"}}},
        ReadRow{"a break in an empty title is nothing",
                "<SYNC Start=0><br><br>a\r\n</BODY>\r\n",
                {{0, 10, "a"}}},
        ReadRow{"a quoted time is 0", "<SYNC Start=\"1000\">a\r\n</BODY>\r\n", {{0, 10, "a"}}},
        ReadRow{"a time with decimals",
                "<SYNC Start=1000.5>a\r\n</BODY>\r\n",
                {{1.0005, 11.0005, "a"}}},
        ReadRow{"no end of the body",
                "<SYNC Start=1000><P>A\r\n<SYNC Start=2000>B\r\n",
                {{1, 2, "A"}},
                Corrupt},
        ReadRow{
            "no end of the body, many empty lines", "<SYNC Start=1000>A\r\n\r\n\r\n", {}, Corrupt},
        ReadRow{"a SYNC without start",
                "<SYNC Start=1000>A\r\n<SYNC Begin=2>\r\nB\r\n</BODY>\r\n",
                {},
                Corrupt},
        ReadRow{"a SYNC whose start has no value",
                "<SYNC Start=1>A\r\n<SYNC Start=2>B\r\n<SYNC Start>\r\nC\r\n</BODY>\r\n",
                {{0.001, 0.002, "A"}},
                Corrupt},
        ReadRow{"a P tag whose class has no value",
                "<SYNC Start=1>\r\n<P Class>A\r\n</BODY>\r\n",
                {},
                Corrupt},
        ReadRow{"text without tags", "just text", {}, Corrupt},
        ReadRow{"a tag that never ends", "a<b\r\nc\r\n", {}, Corrupt},
        ReadRow{"nothing between the braces", "<>< >a\r\n</BODY>\r\n", {{0, 10, "<>< >a"}}}));

TEST(SamiRead, LosesWhatFollowsTheBodyTagOnItsLine) {
    const Loaded loaded =
        LoadText("x.smi", "<SAMI><Body><SYNC Start=1000>A\r\n<SYNC Start=2000>B\r\n</BODY>\r\n");
    EXPECT_EQ(loaded.Titles(), (Titles{{2, 12, "B"}}));
    EXPECT_EQ(KeptSami(loaded.style)->header, "<SAMI><Body>\r\n");
}

struct KeptRow {
    const char* what;
    std::string_view file;
    const char* header;
    const char* className;
    const char* footer;
};

class SamiKept : public testing::TestWithParam<KeptRow> {};

TEST_P(SamiKept, Parts) {
    const FileStyle style = LoadText("x.smi", GetParam().file).style;
    EXPECT_EQ(KeptSami(style),
              (SamiParts{GetParam().header, GetParam().className, GetParam().footer}))
        << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SamiKept,
    testing::Values(KeptRow{"header with its blanks, class, footer with its rest",
                            "<SAMI>\n  <HEAD>\n\n<BODY> x\n<SYNC Start=1000><P Class=ENCC>A\n"
                            "</BODY> y\n  </SAMI>\nz",
                            "<SAMI>\r\n  <HEAD>\r\n\r\n<BODY>\r\n", "ENCC",
                            "</BODY> y\r\n  </SAMI>\r\nz\r\n"},
                    KeptRow{"the last class",
                            "<body>\n<P class = a ><P\tClass=b><P Class=c id=d>\n</body>",
                            "<body>\r\n", "c id=d", "</body>\r\n"},
                    KeptRow{"no class, no end", "<BODY>\n<P>\n", "<BODY>\r\n", "", ""}));

TEST(SamiRead, WithoutABodyTagIsCorruptAndKeepsNothing) {
    for (const char* file : {"<SAMI>\r\n<BODY >\r\n<SYNC Start=1>\r\n", "<SAMI>\r\n<BODY>",
                             "<SAMI>\r\n<BODY>\r\n", ""}) {
        const Loaded loaded = LoadText("x.smi", file);
        EXPECT_EQ(loaded.result.message, Corrupt) << file;
        EXPECT_FALSE(KeptSami(loaded.style)) << file;
        EXPECT_EQ(loaded.titles.Count(), 0) << file;
    }
}

constexpr const char* DefaultHeader = R"(<SAMI>
<HEAD>
<STYLE TYPE="Text/css"><!--
P {margin-left: 29pt; margin-right: 29pt; font-size: 14pt;
text-align: center; font-family: tahoma, arial, sans-serif;
font-weight: bold; color: white; background-color: black;}
.SUBTTL {Name: 'Subtitles'; SAMIType: CC;}
-->
</STYLE>
</HEAD>

<BODY>
<SYNC Start=0><P Class=SUBTTL><br>
)";

std::string WithCrLf(std::string_view text) {
    std::string result;
    for (const char c : text)
        result += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return result;
}

struct WriteRow {
    const char* what;
    Titles titles;
    std::string body;
};

class SamiWrite : public testing::TestWithParam<WriteRow> {};

TEST_P(SamiWrite, Gives) {
    EXPECT_EQ(SavedText("x.smi", GetParam().titles),
              WithCrLf(DefaultHeader + GetParam().body + "</BODY>\n</SAMI>\n"))
        << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SamiWrite,
    testing::Values(
        WriteRow{"a gap",
                 {{1, 4, "A"}, {6, 8, "B"}},
                 "<SYNC Start=1000><P>A\n<SYNC Start=4000><P><br>\n"
                 "<SYNC Start=6000><P>B\n<SYNC Start=8000><P><br>\n"},
        WriteRow{"titles that touch",
                 {{1, 4, "A"}, {4, 6, "B"}},
                 "<SYNC Start=1000><P>A\n<SYNC Start=4000><P>B\n<SYNC Start=6000><P><br>\n"},
        WriteRow{"titles that overlap",
                 {{1, 5, "A"}, {4, 6, "B"}},
                 "<SYNC Start=1000><P>A\n<SYNC Start=4000><P>B\n<SYNC Start=6000><P><br>\n"},
        WriteRow{"lines and tags",
                 {{1, 2, "a\r\n<i>b</i>"}},
                 "<SYNC Start=1000><P>a<br><i>b</i>\n<SYNC Start=2000><P><br>\n"},
        WriteRow{"halves to even, below 0 too",
                 {{0.0005, 0.0015, "a"}, {-1, 0, "b"}},
                 "<SYNC Start=0><P>a\n<SYNC Start=-1000><P>b\n<SYNC Start=0><P><br>\n"},
        WriteRow{"no titles", {}, ""}));

TEST(SamiWrite, KeepsHeaderClassAndFooterOfTheFile) {
    const Loaded loaded =
        LoadText("x.smi", "<SAMI>\r\n<!-- my own -->\r\n<BODY>\r\n<SYNC Start=1000><P "
                          "Class=ENCC>A\r\n<SYNC Start=2000><P>\r\n</BODY>\r\n</SAMI>\r\n");
    EXPECT_EQ(SavedText("x.smi", loaded.Titles(), loaded.style),
              "<SAMI>\r\n<!-- my own -->\r\n<BODY>\r\n<SYNC Start=0><P Class=ENCC><br>\r\n"
              "<SYNC Start=1000><P>A\r\n<SYNC Start=2000><P><br>\r\n</BODY>\r\n</SAMI>\r\n\r\n");
}

} // namespace
