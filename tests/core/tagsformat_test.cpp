#include "formats/tags.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

/// The conversions said in the plainest way: whole texts rebuilt step by step.
namespace plain {

bool ReplaceFirst(std::string& text, const std::string& what, const std::string& with) {
    const std::size_t at = text.find(what);
    if (at == std::string::npos)
        return false;
    text = text.substr(0, at) + with + text.substr(at + what.size());
    return true;
}

std::string MicroDVDCodesToTags(std::string text, OpenStyles& open) {
    const auto has = [&text](const char* code) {
        return text.find(code) != std::string::npos;
    };
    while (has("{y}") || has("{y:b}") || has("{y:i}")) {
        if (ReplaceFirst(text, "{y:i}", "<i>"))
            open.italic = true;
        if (ReplaceFirst(text, "{y:b}", "<b>"))
            open.bold = true;
        const std::size_t end = text.find("{y}");
        if (end == std::string::npos)
            continue;
        std::string before = text.substr(0, end);
        if (open.italic)
            before += "</i>";
        if (open.bold)
            before += "</b>";
        open = {};
        text.replace(0, end + 3, before);
    }
    return text;
}

std::string ReplaceAll(const std::string& text, const std::string& what, const std::string& with) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        if (text.compare(at, what.size(), what) == 0) {
            result += with;
            at += what.size();
        } else {
            result += text[at++];
        }
    }
    return result;
}

std::string StripTags(std::string text) {
    for (const char* tag : {"<i>", "<b>", "</i>", "</b>"})
        text = ReplaceAll(text, tag, "");
    return text;
}

std::string TagsToMicroDVDCodes(std::string text) {
    text = ReplaceAll(text, "\r\n", "|");
    text = ReplaceAll(text, "<i>", "{y:i}");
    text = ReplaceAll(text, "<b>", "{y:b}");
    text = ReplaceAll(text, "</i>", "{y}");
    return ReplaceAll(text, "</b>", "{y}");
}

} // namespace plain

std::string ToTags(const std::string& text, OpenStyles& open) {
    std::string out = "before{y";
    MicroDVDCodesToTags(text, open, out);
    EXPECT_EQ(out.substr(0, 8), "before{y");
    return out.substr(8);
}

template <typename CONVERT>
std::string Result(CONVERT convert, const std::string& text) {
    std::string out = "<i>";
    convert(text, out);
    EXPECT_EQ(out.substr(0, 3), "<i>");
    return out.substr(3);
}

struct Row {
    const char* codes;
    const char* tags;
    bool italic = false;
    bool bold = false;
};

class Codes : public testing::TestWithParam<Row> {};

TEST_P(Codes, BecomeTags) {
    OpenStyles open;
    EXPECT_EQ(ToTags(GetParam().codes, open), GetParam().tags);
    EXPECT_EQ(open.italic, GetParam().italic);
    EXPECT_EQ(open.bold, GetParam().bold);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Codes,
    testing::Values(Row{"", ""}, Row{"plain {x} {Y} {y:u}", "plain {x} {Y} {y:u}"},
                    Row{"{y:i}Hi", "<i>Hi", true}, Row{"{y:b}Hi", "<b>Hi", false, true},
                    Row{"{y:i}Hello{y}", "<i>Hello</i>"},
                    Row{"{y:i}{y:b}x{y}{y}", "<i><b>x</i></b>"},
                    Row{"{y:b}{y:i}x{y}", "<b><i>x</i></b>"}, Row{"a{y}b", "ab"},
                    // The first round meets the {y:i} behind the {y} as well.
                    Row{"{y}{y:i}x", "</i><i>x"},
                    // The second round is the one that sees the second {y:i}.
                    Row{"{y:i}a{y}b{y}c{y:i}d{y:i}", "<i>a</i>b</i>c<i>d<i>", true},
                    // What vanishes lets its two sides form a code.
                    Row{"{y{y}:i}x", "<i>x", true}, Row{"{{y}y}", ""}, Row{"{y{y{y}}}", ""},
                    Row{"{y{y}:b}{y}x", "<b></b>x"}, Row{"{{y}y{y}}", ""},
                    // Nothing vanishes where a tag is closed in its place.
                    Row{"{y:i}{y{y}}", "<i>{y</i>}"}));

TEST(Codes, StayOpenFromOnePieceToTheNext) {
    OpenStyles open;
    EXPECT_EQ(ToTags("{y:i}a", open), "<i>a");
    EXPECT_EQ(ToTags("b{y}c", open), "b</i>c");
    EXPECT_FALSE(open.italic);
}

TEST(Codes, GiveWhatTheRoundsSaidPlainlyGive) {
    std::mt19937 random(20240229);
    const std::vector<std::string> pieces{"{y:i}", "{y:b}", "{y}", "{y", "{",  "}",  "y",
                                          ":i}",   ":b}",   "a",   ":",  "i}", "y}", "<i>"};
    for (int i = 0; i < 200'000; ++i) {
        std::string text;
        for (auto left = random() % 12; left > 0; --left)
            text += pieces[random() % pieces.size()];
        OpenStyles open{random() % 4 == 0, random() % 4 == 0};
        OpenStyles plainOpen = open;
        ASSERT_EQ(ToTags(text, open), plain::MicroDVDCodesToTags(text, plainOpen)) << text;
        ASSERT_EQ(open.italic, plainOpen.italic) << text;
        ASSERT_EQ(open.bold, plainOpen.bold) << text;
    }
}

TEST(OpenTags, AreClosedItalicsFirst) {
    OpenStyles open{true, true};
    std::string text = "x";
    CloseOpenTags(open, text);
    CloseOpenTags(open, text);
    EXPECT_EQ(text, "x</i></b>");
}

TEST(Tags, AreStrippedKindByKind) {
    EXPECT_EQ(Result(StripTags, "<i>a</i><b>b</b><I>c</I><u>d</u>"), "ab<I>c</I><u>d</u>");
    EXPECT_EQ(Result(StripTags, "<b<i>>x"), "x");
    EXPECT_EQ(Result(StripTags, "<i<b>>x"), "<i>x");
    EXPECT_EQ(Result(StripTags, "<i<i>>x"), "<i>x");
}

TEST(Tags, BecomeCodes) {
    EXPECT_EQ(Result(TagsToMicroDVDCodes, "<i><b>x</b></i>\r\ny<I>"), "{y:i}{y:b}x{y}{y}|y<I>");
    EXPECT_EQ(Result(LineBreaksToTags, "a\r\nb\nc\rd<i>"), "a<br>b\nc\rd<i>");
}

TEST(Tags, GiveWhatOneReplacementAfterTheOtherGives) {
    std::mt19937 random(7);
    const std::vector<std::string> pieces{"<i>", "<b>", "</i>", "</b>", "<",  "i>", "/b>",
                                          "/",   "b",   ">",    "\r\n", "\r", "\n", "x"};
    for (int i = 0; i < 100'000; ++i) {
        std::string text;
        for (auto left = random() % 12; left > 0; --left)
            text += pieces[random() % pieces.size()];
        ASSERT_EQ(Result(StripTags, text), plain::StripTags(text));
        ASSERT_EQ(Result(TagsToMicroDVDCodes, text), plain::TagsToMicroDVDCodes(text));
    }
}

} // namespace
