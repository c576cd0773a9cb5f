#include "formattesting.h"

#include "base/codepages.h"
#include "base/utf8.h"
#include "formats/encoding.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using namespace std::string_view_literals;
using Encoding = FileStyle::Encoding;

constexpr std::string_view Times = "1\r\n00:00:01,000 --> 00:00:02,000\r\n";
constexpr std::string_view End = "\r\n\r\n";

std::string Block(std::string_view text) {
    return std::string(Times) + std::string(text) + std::string(End);
}

/// Every byte as one unit of two bytes, after the mark.
std::string Utf16(std::string_view ascii, bool bigEndian) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) {
        if (bigEndian)
            bytes += '\0';
        bytes += c;
        if (!bigEndian)
            bytes += '\0';
    }
    return bytes;
}

FileStyle Style(Encoding encoding, bool mark) {
    FileStyle style;
    style.encoding = encoding;
    style.byteOrderMark = mark;
    return style;
}

struct Row {
    const char* what;
    std::string file;
    std::string text;
    Encoding encoding;
    bool mark;
    const char* codePage = "windows-1252";
};

class FileEncoding : public testing::TestWithParam<Row> {};

TEST_P(FileEncoding, IsReadAndWrittenBack) {
    const Row& row = GetParam();
    const Loaded loaded = LoadText("x.srt", row.file, {}, row.codePage);
    ASSERT_EQ(loaded.titles.Count(), 1) << row.what;
    EXPECT_EQ(loaded.titles.Text(1), row.text) << row.what;
    EXPECT_EQ(loaded.style.encoding, row.encoding) << row.what;
    EXPECT_EQ(loaded.style.byteOrderMark, row.mark) << row.what;
    EXPECT_EQ(SavedText("x.srt", loaded.Titles(), loaded.style, {}, row.codePage), row.file)
        << row.what;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FileEncoding,
    testing::Values(
        Row{"ASCII", Block("Hello"), "Hello", Encoding::Utf8, false},
        Row{"UTF-8", Block("\xC3\xA9\xF0\x9F\x98\x80"), "\xC3\xA9\xF0\x9F\x98\x80", Encoding::Utf8,
            false},
        Row{"UTF-8 with a mark", "\xEF\xBB\xBF" + Block("\xC3\xA9"), "\xC3\xA9", Encoding::Utf8,
            true},
        Row{"UTF-16, little end first", Utf16(Block("Hello"), false), "Hello",
            Encoding::Utf16LittleEndian, true},
        Row{"UTF-16, big end first", Utf16(Block("Hello"), true), "Hello", Encoding::Utf16BigEndian,
            true},
        Row{"UTF-16 beyond the first plane",
            Utf16(Times, false) + std::string("\x3D\xD8\x00\xDE", 4) + Utf16(End, false).substr(2),
            "\xF0\x9F\x98\x80", Encoding::Utf16LittleEndian, true},
        Row{"Windows-1252", Block("caf\xE9 \x80"), "caf\xC3\xA9 \xE2\x82\xAC", Encoding::CodePage,
            false},
        Row{"bytes that Windows-1252 leaves undefined", Block("\x81\x8D\x8F\x90\x9D"),
            "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D", Encoding::CodePage, false},
        Row{"Windows-1250", Block("\x9C\xB3"), "\xC5\x9B\xC5\x82", Encoding::CodePage, false,
            "windows-1250"},
        Row{"KOI8-R", Block("\xEB\xC9\xCE\xCF"), "\xD0\x9A\xD0\xB8\xD0\xBD\xD0\xBE",
            Encoding::CodePage, false, "KOI8-R"},
        Row{"Shift_JIS", Block("\x82\xB1\x82\xF1"), "\xE3\x81\x93\xE3\x82\x93", Encoding::CodePage,
            false, "SHIFT_JIS"},
        Row{"GB18030", Block("\xC4\xE3\xBA\xC3"), "\xE4\xBD\xA0\xE5\xA5\xBD", Encoding::CodePage,
            false, "GB18030"},
        Row{"EUC-KR", Block("\xBE\xC8"), "\xEC\x95\x88", Encoding::CodePage, false, "EUC-KR"},
        Row{"bytes that are no Shift_JIS", Block("\x82\xB1\xFF"), "\xE3\x81\x93\xEF\x9F\xBF",
            Encoding::CodePage, false, "SHIFT_JIS"},
        Row{"an overlong form is no UTF-8", Block("\xC0\xAF"), "\xC3\x80\xC2\xAF",
            Encoding::CodePage, false},
        Row{"half a character is no UTF-8", Block("\xE2\x82"), "\xC3\xA2\xE2\x80\x9A",
            Encoding::CodePage, false}));

/// A block in UTF-16; the text is given in units.
std::string BlockOfUnits(std::u16string_view text, bool bigEndian) {
    std::string bytes = Utf16(Times, bigEndian);
    for (const char16_t unit : text) {
        const auto high = static_cast<char>(unit >> 8);
        const auto low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes + Utf16(End, bigEndian).substr(2);
}

struct Halves {
    const char* what;
    std::u16string_view units;
    /// What a file in UTF-8 gets.
    std::string utf8;
};

class HalfCharacters : public testing::TestWithParam<Halves> {};

TEST_P(HalfCharacters, ComeBackInUtf16) {
    const Halves& row = GetParam();
    for (const bool bigEndian : {false, true}) {
        const std::string file = BlockOfUnits(row.units, bigEndian);
        const Loaded loaded = LoadText("x.srt", file);
        EXPECT_EQ(loaded.titles.Count(), 1) << row.what;
        EXPECT_EQ(SavedText("x.srt", loaded.Titles(), loaded.style), file) << row.what;
    }
}

TEST_P(HalfCharacters, AreReplacedInOtherEncodings) {
    const Halves& row = GetParam();
    const Loaded loaded = LoadText("x.srt", BlockOfUnits(row.units, false));
    for (const Encoding encoding : {Encoding::Utf8, Encoding::CodePage})
        EXPECT_EQ(SavedText("x.srt", loaded.Titles(), Style(encoding, false)), Block(row.utf8))
            << row.what;
}

constexpr std::string_view Replaced = "\xEF\xBF\xBD";

// A literal of UTF-16 cannot name half a character.
constexpr char16_t High = 0xD83D;
constexpr char16_t Low = 0xDE00;
constexpr std::array Alone{char16_t{u'a'}, High, char16_t{u'x'}};
constexpr std::array LowAlone{char16_t{u'a'}, Low, char16_t{u'x'}};
constexpr std::array WrongWayRound{Low, High};
constexpr std::array BeforeACharacter{High, High, Low};
constexpr std::array BehindACharacter{High, Low, Low};
constexpr std::array Ends{char16_t{0xD800}, char16_t{u'a'}, char16_t{0xDBFF}, char16_t{u'b'},
                          char16_t{0xDC00}, char16_t{u'c'}, char16_t{0xDFFF}};
constexpr std::array Beside{char16_t{0xD7FF}, High, char16_t{0xE000}};

template <std::size_t Size>
std::u16string_view Units(const std::array<char16_t, Size>& units) {
    return {units.data(), Size};
}

std::string InUtf8(const std::string& before, const std::string& behind) {
    return before + std::string(Replaced) + behind;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HalfCharacters,
    testing::Values(
        Halves{"a first half", Units(Alone), InUtf8("a", "x")},
        Halves{"a second half", Units(LowAlone), InUtf8("a", "x")},
        Halves{"the wrong way round", Units(WrongWayRound), InUtf8("", std::string(Replaced))},
        Halves{"before a character", Units(BeforeACharacter), InUtf8("", "\xF0\x9F\x98\x80")},
        Halves{"behind a character", Units(BehindACharacter), InUtf8("\xF0\x9F\x98\x80", "")},
        Halves{"first and last ones", Units(Ends),
               InUtf8("", "a") + InUtf8("", "b") + InUtf8("", "c") + InUtf8("", "")},
        Halves{"beside their neighbours", Units(Beside), InUtf8("\xED\x9F\xBF", "\xEE\x80\x80")}));

TEST(HalfCharacters, ThatMeetAreOneCharacter) {
    const std::string met = "a\xED\xA0\xBD\xED\xB8\x80x";
    constexpr std::array Whole{char16_t{u'a'}, High, Low, char16_t{u'x'}};
    EXPECT_EQ(SavedText("x.srt", {{1, 2, met}}, Style(Encoding::Utf16BigEndian, true)),
              BlockOfUnits(Units(Whole), true));
    EXPECT_EQ(SavedText("x.srt", {{1, 2, met}}), Block("a\xF0\x9F\x98\x80x"));
}

TEST(HalfCharacters, AreNoUtf8) {
    const Loaded loaded = LoadText("x.srt", Block("\xED\xA0\x80"));
    EXPECT_EQ(loaded.style.encoding, Encoding::CodePage);
    EXPECT_EQ(loaded.titles.Text(1), "\xC3\xAD\xC2\xA0\xE2\x82\xAC");
}

TEST(FileEncoding, ASingleByteAtTheEndOfUtf16IsReplaced) {
    const Loaded loaded =
        LoadText("x.srt", Utf16(Times, false) + Utf16("A", false).substr(2) + "x");
    EXPECT_EQ(loaded.titles.Text(1), "A\xEF\xBF\xBD");
}

TEST(FileEncoding, SingleBrokenBytesOfMarkedUtf8AreReadInTheCodePage) {
    const Loaded loaded = LoadText("x.srt", "\xEF\xBB\xBF" + Block("\xC3\xA9 \xE9"));
    EXPECT_EQ(loaded.titles.Text(1), "\xC3\xA9 \xC3\xA9");
    EXPECT_EQ(loaded.style.encoding, Encoding::Utf8);
    EXPECT_TRUE(loaded.style.byteOrderMark);
}

TEST(FileEncoding, MarksAloneAreEmptyFiles) {
    for (const char* mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        const Loaded loaded = LoadText("x.srt", mark);
        EXPECT_EQ(loaded.result.outcome, LoadOutcome::Complete);
        EXPECT_TRUE(loaded.style.byteOrderMark);
        EXPECT_EQ(SavedText("x.srt", {}, loaded.style), mark);
    }
}

TEST(FileEncoding, ACharacterThatTheCodePageLacksMakesTheWholeFileUtf8) {
    const FileStyle style = Style(Encoding::CodePage, false);
    EXPECT_EQ(SavedText("x.srt", {{1, 2, "\xC3\xA9\xD0\xBA"}}, style), Block("\xC3\xA9\xD0\xBA"));
    EXPECT_EQ(SavedText("x.srt", {{1, 2, "\xC3\xA9"}}, style), Block("\xE9"));
}

TEST(FileEncoding, BytesThatWouldReadAsUtf8AreWrittenAsUtf8) {
    // A with tilde and a copyright sign: in Windows-1252 the bytes of an e with acute.
    const FileStyle style = Style(Encoding::CodePage, false);
    const std::string text = "\xC3\x83\xC2\xA9";
    const std::string saved = SavedText("x.srt", {{1, 2, text}}, style);
    EXPECT_EQ(saved, Block(text));
    EXPECT_EQ(LoadText("x.srt", saved).titles.Text(1), text);
}

TEST(FileEncoding, OfANewDocumentIsUtf8WithoutAMark) {
    EXPECT_EQ(SavedText("x.srt", {{1, 2, "\xD0\xBA"}}), Block("\xD0\xBA"));
}

std::string AllBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

class Page : public testing::TestWithParam<const char*> {};

TEST_P(Page, GivesEveryByteBack) {
    const CodePage page(GetParam());
    EXPECT_EQ(page.Name(), GetParam());
    const std::string text = page.ToUtf8(AllBytes());
    EXPECT_TRUE(IsValidUtf8(text));
    EXPECT_EQ(page.FromUtf8(text), AllBytes());
}

INSTANTIATE_TEST_SUITE_P(Names, Page,
                         testing::Values("windows-1252", "windows-1250", "windows-1251",
                                         "windows-1253", "windows-1254", "windows-1255",
                                         "windows-1256", "windows-1257", "ISO-8859-1", "ISO-8859-2",
                                         "ISO-8859-7", "ISO-8859-15", "KOI8-R", "KOI8-U", "CP850",
                                         "MACINTOSH"));

TEST(Page, OfAnUnknownNameIsWindows1252) {
    for (const char* name : {"nonsense", "KOI8-R//TRANSLIT"}) {
        EXPECT_FALSE(CodePage::Knows(name)) << name;
        EXPECT_EQ(CodePage(name).Name(), "windows-1252") << name;
        EXPECT_EQ(CodePage(name).ToUtf8("\x80"), "\xE2\x82\xAC") << name;
    }
    for (const char* name : {"", "cp1252", "KOI8-R", "SHIFT_JIS", "BIG5", "GB18030", "IBM037"})
        EXPECT_TRUE(CodePage::Knows(name)) << name;
}

TEST(Page, OfSeveralBytesBringsAllBytesBack) {
    for (const char* name : {"SHIFT_JIS", "BIG5", "GB18030", "EUC-KR", "EUC-JP", "UTF-8"}) {
        const CodePage page(name);
        EXPECT_EQ(page.Name(), name);
        for (const std::string& bytes : {AllBytes(), AllBytes() + "\x82", std::string("\xFF\xFEx")})
            EXPECT_EQ(page.FromUtf8(page.ToUtf8(bytes)), bytes) << name;
    }
    EXPECT_EQ(CodePage("SHIFT_JIS").FromUtf8("\xC3\xA9"), std::nullopt);
}

TEST(Page, TellsWhatItLacks) {
    EXPECT_EQ(CodePage().FromUtf8("\xD0\xBA"), std::nullopt);
    EXPECT_EQ(CodePage().FromUtf8("\xFF"), std::nullopt);
    EXPECT_EQ(CodePage("KOI8-R").FromUtf8("\xC3\xA9"), std::nullopt);
}

TEST(Utf8, IsTakenApartAndPutTogether) {
    for (char32_t wanted = 0; wanted <= 0x10FFFF; ++wanted) {
        if (wanted >= 0xD800 && wanted <= 0xDFFF)
            continue;
        std::string text;
        AppendUtf8(text, wanted);
        std::size_t at = 0;
        ASSERT_EQ(NextCodePoint(text, at), wanted);
        ASSERT_EQ(at, text.size());
    }
}

TEST(Utf8, KnowsWhatIsInvalid) {
    struct Invalid {
        std::string_view text;
        std::size_t valid;
    };
    for (const auto& [text, valid] :
         {Invalid{"\x80"sv, 0}, Invalid{"abcdefghij\xFF"sv, 10}, Invalid{"\xC1\x81"sv, 0},
          Invalid{"\xED\xA0\x80"sv, 0}, Invalid{"\xF4\x90\x80\x80"sv, 0}, Invalid{"a\xC3"sv, 1},
          Invalid{"\xF8\x88\x80\x80\x80"sv, 0}, Invalid{"\xC3\xA9\xE0\x80\xAF"sv, 2}})
        EXPECT_EQ(ValidUtf8Length(text), valid) << testing::PrintToString(text);
}

} // namespace
