#include "formats/mending.h"
#include "formattesting.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

/// What a wild file gives when it is read by the rules, and what once it is mended.
struct WildRow {
    const char* file;
    /// "start-end text" for each title, between bars; after "CORRUPT" when the reading ended
    /// with its message.
    const char* strict;
    const char* mended;
    const char* summary;
};

std::string Shown(const SUBTITLES& titles) {
    std::string shown;
    for (const TestTitle& title : TitlesOf(titles)) {
        char times[64];
        std::snprintf(times, sizeof times, "%g-%g ", title.start, title.end);
        shown += (shown.empty() ? "" : " | ") + std::string(times) + title.text;
    }
    return shown;
}

std::string Shown(const Loaded& loaded) {
    const std::string titles = Shown(loaded.titles);
    const bool corrupt = loaded.result.outcome == LoadOutcome::Corrupt;
    if (!corrupt)
        return titles;
    return titles.empty() ? "CORRUPT" : "CORRUPT " + titles;
}

MendedText MendFile(const std::string& name, std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    if (name.ends_with(".srt"))
        return MendSubRip(text);
    return name.ends_with(".sub") ? MendMicroDvd(text) : MendSami(text);
}

class WildFile : public testing::TestWithParam<WildRow> {};

TEST_P(WildFile, IsReadAsBefore) {
    const std::string text = FileText(std::filesystem::path(WILD_FOLDER) / GetParam().file);
    EXPECT_EQ(Shown(LoadText(GetParam().file, text)), GetParam().strict);
}

TEST_P(WildFile, IsMended) {
    const std::string text = FileText(std::filesystem::path(WILD_FOLDER) / GetParam().file);
    const MendedText mended = MendFile(GetParam().file, text);
    EXPECT_EQ(MendSummary(mended.mends, true), GetParam().summary);
    EXPECT_EQ(Shown(LoadText(GetParam().file, mended.text)), GetParam().mended);
}

TEST_P(WildFile, IsRightOnceMended) {
    const std::string text = FileText(std::filesystem::path(WILD_FOLDER) / GetParam().file);
    const MendedText once = MendFile(GetParam().file, text);
    const MendedText again = MendFile(GetParam().file, once.text);
    EXPECT_EQ(MendSummary(again.mends, true), "");
    EXPECT_EQ(again.text, once.text);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, WildFile,
    testing::Values(
        WildRow{"right.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three", ""},
        WildRow{"blank-before-times.srt", "1-0.005 One | 3-0 Two\r\nlines | 65.002-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"blank-only-lines.srt",
                "1-2.5 One\r\n 	\r\n2\r\n00:00:03,000 --> 00:00:04,000\r\nTwo\r\nlines\r\n 	"
                "\r\n3\r\n00:01:05,250 --> 00:01:07,000\r\nThree",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 4)"},
        WildRow{"blanks-within-times.srt", "1--0 One | 3--0 Two\r\nlines | 65--0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"byte-order-mark.srt", "CORRUPT 1-2.5 One",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 5)"},
        WildRow{"colons.srt", "0-0 One | 0-0 Two\r\nlines | 0-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"coordinates-short-hours.srt", "1-0.5 One | 3-0 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 lines of times in another form (first on line 2)"},
        WildRow{"coordinates.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1 line with coordinates (line 2)"},
        WildRow{"ctrl-z-line.srt", "CORRUPT 1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 14), 1 end mark (Ctrl-Z) (line 15)"},
        WildRow{"ctrl-z.srt", "CORRUPT 1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1 blank line between blocks (line 14), 1 end mark (Ctrl-Z) (line 14)"},
        WildRow{"cue-settings.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"dash-for-arrow.srt", "1-0.5 One | 3-0 Two\r\nlines | 65.25-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"double-arrow.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"em-dash-arrow.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"empty-line-at-the-front.srt", "CORRUPT",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 1)"},
        WildRow{"empty-line-within-text.srt", "CORRUPT 1-2.5 One", "1-2.5 One\r\nmore | 3-4 Two",
                "1 blank line within a text (line 4)"},
        WildRow{"empty-text-well-formed.srt", "1-2.5  | 3-4 Two", "1-2.5  | 3-4 Two", ""},
        WildRow{"empty-texts.srt", "1-2.5 \r\n2\r\n00:00:03,000 --> 00:00:04,000\r\nTwo",
                "1-2.5  | 3-4 Two", "1 missing empty line between blocks (line 4)"},
        WildRow{"from-zero.srt", "CORRUPT", "1-2.5 One | 3-4 Two | 65.25-67 Three",
                "1 block with number 0 (line 1)"},
        WildRow{"header-as-in-vtt.srt", "CORRUPT", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1 line before the first block (line 1), 1 blank line between blocks (line 2), 3 "
                "lines of times in another form (first on line 4)"},
        WildRow{"junk-at-the-front.srt", "CORRUPT", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 lines before the first block (first on line 1), 1 blank line between blocks "
                "(line 3)"},
        WildRow{"long-arrow.srt", "1-2.05 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"many-empty-lines.srt", "CORRUPT 1-2.5 One",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "10 blank lines between blocks (first on line 5)"},
        WildRow{"minutes-only.srt", "0-0.5 One | 0-0 Two\r\nlines | 0.25-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"missing-numbers.srt", "CORRUPT", "1-2.5 One | 3-4 Two | 65.25-67 Three",
                "3 blocks without a number (first on line 1)"},
        WildRow{"mixed-lines.srt", "CORRUPT 1-2.5 One",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 5)"},
        WildRow{"no-blanks-at-arrow.srt", "1-0.5 One | 3-0 Two\r\nlines | 65.25-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"no-break-space-at-arrow.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"no-break-space-lines.srt",
                "1-2.5 One\r\n \r\n2\r\n00:00:03,000 --> "
                "00:00:04,000\r\nTwo\r\nlines\r\n \r\n3\r\n00:01:05,250 --> 00:01:07,000\r\nThree",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 4)"},
        WildRow{"no-empty-lines-no-numbers.srt", "CORRUPT", "1-2.5 One | 3-4 Two | 65.25-67 Three",
                "3 blocks without a number (first on line 1), 2 missing empty lines between blocks "
                "(first on line 3)"},
        WildRow{"no-empty-lines.srt",
                "1-2.5 One\r\n2\r\n00:00:03,000 --> "
                "00:00:04,000\r\nTwo\r\nlines\r\n3\r\n00:01:05,250 --> 00:01:07,000\r\nThree",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 missing empty lines between blocks (first on line 4)"},
        WildRow{"no-milliseconds.srt", "0-0 One | 0-0 Two\r\nlines | 0-0 Three",
                "1-2 One | 3-4 Two\r\nlines | 65-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"nothing-but-words.srt", "CORRUPT", "",
                "2 lines before the first block (first on line 1)"},
        WildRow{"number-in-words.srt", "CORRUPT 1-2.5 One", "1-2.5 One | 3-4 Two | 65.25-67 Three",
                "1 number in another form (line 5)"},
        WildRow{"number-with-blanks.srt", "CORRUPT 1-2.5 One",
                "1-2.5 One | 3-4 Two | 65.25-67 Three", "1 number in another form (line 5)"},
        WildRow{"numbers-as-words.srt", "1-2.5 1984 | 3-4 2 | 65.25-67 99",
                "1-2.5 1984 | 3-4 2 | 65.25-67 99", ""},
        WildRow{"old-mac-lines.srt", "CORRUPT 1-2.5 One",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 5)"},
        WildRow{"one-digit-fraction.srt", "1-0.005 One | 3-0 Two\r\nlines | 65-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.2-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"one-missing-number.srt", "CORRUPT 1-2.5 One",
                "1-2.5 One | 3-4 Two | 65.25-67 Three", "1 block without a number (line 5)"},
        WildRow{"one-no-break-space.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"points.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"repeated-numbers.srt", "1-2.5 One | 3-4 Two | 65.25-67 Three",
                "1-2.5 One | 3-4 Two | 65.25-67 Three", ""},
        WildRow{"short-hours.srt", "1-0.5 One | 3-0 Two\r\nlines | 65.25-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"single-digits.srt", "1-0.5 One | 3-0 Two | 65.25-0 Three",
                "1-2.5 One | 3-4 Two | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"text-beside-times.srt", "1-2.5 \r\n2\r\n00:00:03,000 --> 00:00:04,000 Two",
                "1-2.5 One | 3-4 Two", "2 texts beside their times (first on line 2)"},
        WildRow{"thin-arrow.srt", "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"times-in-a-dialogue.srt", "CORRUPT 1-2.5 Open 10:30 - 11:15",
                "1-2.5 Open 10:30 - 11:15 | 3-4 Two", "1 blank line between blocks (line 5)"},
        WildRow{"two-digit-fraction.srt", "1-2.05 One | 3-4 Two\r\nlines | 65.025-67 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"two-empty-lines.srt", "CORRUPT 1-2.5 One",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 5)"},
        WildRow{"unicode-arrow.srt", "1-0.5 One | 3-0 Two\r\nlines | 65.25-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"unix-lines.srt", "CORRUPT 1-2.5 One",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "2 blank lines between blocks (first on line 5)"},
        WildRow{"wide-blanks-at-arrow.srt", "1-0 One | 3-0 Two\r\nlines | 65.25-0 Three",
                "1-2.5 One | 3-4 Two\r\nlines | 65.25-67 Three",
                "3 lines of times in another form (first on line 2)"},
        WildRow{"year-as-last-line.srt", "CORRUPT",
                "1-2.5 It was in\r\n1984 | 3-4 Two | 65.25-67 Three",
                "3 blocks without a number (first on line 1)"},
        WildRow{"right.sub", "1-2 One | 3-4 Two\r\nlines", "1-2 One | 3-4 Two\r\nlines", ""},
        WildRow{"blanks-in-braces.sub", "1-2 One | 3-4  Two", "1-2 One | 3-4  Two",
                "2 titles with their frames in another form (first on line 1)"},
        WildRow{"byte-order-mark.sub", "CORRUPT", "1-2 One",
                "1 invisible mark before a title (line 1)"},
        WildRow{"ctrl-z.sub", "CORRUPT 1-2 One", "1-2 One",
                "1 invisible mark before a title (line 2)"},
        WildRow{"default-style.sub", "0-0 {C:$0000ff}{F:Arial} | 1-2 One", "1-2 One",
                "1 line with a default style (line 1)"},
        WildRow{"fractions.sub", "1-2 One | 3-4 Two", "1-2.04 One | 3-4 Two",
                "1 title with a fraction of a frame (line 1), 1 title with its frames in another "
                "form (line 2)"},
        WildRow{"no-break-space.sub", "CORRUPT", "1-2 One",
                "1 invisible mark before a title (line 1)"},
        WildRow{"no-end.sub", "1-0 One | 3-0 Two | 16-0 Three", "1-3 One | 3-6 Two | 16-19 Three",
                "3 titles without an end (first on line 1)"},
        WildRow{"one-brace.sub", "1-0 One | 3-0 Two", "1-3 One | 3-6 Two",
                "2 titles without an end (first on line 1)"},
        WildRow{"rate-line-zero.sub", "0-0 29.97 | 1-2 One", "1-2 One",
                "1 line that names the frame rate (line 1)"},
        WildRow{"rate-line.sub", "0.04-0.04 23.976 | 1-2 One | 3-4 Two", "1-2 One | 3-4 Two",
                "1 line that names the frame rate (line 1)"},
        WildRow{"rate-with-words.sub", "0.04-0.04 23.976 fps | 1-2 One", "1-2 One",
                "1 line that names the frame rate (line 1)"},
        WildRow{"style-for-end.sub", "1-0 One | 3-4 Two", "1-3 {y:i}One | 3-4 Two",
                "1 title without an end (line 1)"},
        WildRow{"words-before.sub", "CORRUPT", "1-2 One", "1 line before the first title (line 1)"},
        WildRow{"words-between.sub", "CORRUPT 1-2 One", "1-2 One\r\ngoes on | 3-4 Two",
                "1 line without frames (line 2)"},
        WildRow{"right.smi", "1-2.5 One | 3-4 Two\r\nlines", "1-2.5 One | 3-4 Two\r\nlines", ""},
        WildRow{"body-attributes.smi", "CORRUPT", "1-2.5 One | 3-4 Two\r\nlines",
                "1 BODY tag with attributes (line 9), 2 entities (first on line 11)"},
        WildRow{"capital-styles.smi", "1-2.5 <I>One</I> | 2.5-12.5 &nbsp;", "1-2.5 <i>One </i>",
                "2 styles in capital letters (first on line 10), 1 entity (line 11)"},
        WildRow{"class-without-value.smi", "CORRUPT", "1-2.5 One",
                "1 class without a name (line 10), 1 entity (line 11)"},
        WildRow{"closing-tags.smi",
                "1-2.5 One</P></SYNC> | 2.5-3 &nbsp;</P></SYNC> | 3-4 Two</P></SYNC> | 4-14 "
                "&nbsp;</P></SYNC>",
                "1-2.5 One | 3-4 Two",
                "8 closing tags (first on line 10), 2 entities (first on line 11)"},
        WildRow{"comments.smi",
                "1-2.5 One<!-- not shown --><!-- <SYNC Start=1500>Gone --> | 2.5-12.5 &nbsp;",
                "1-2.5 One", "2 comments (first on line 10), 1 entity (line 12)"},
        WildRow{"empty-entities.smi", "1-2.5 One | 2.5-3 &nbsp; | 3-4 Two\r\nlines | 4-14 &nbsp;",
                "1-2.5 One | 3-4 Two\r\nlines", "2 entities (first on line 11)"},
        WildRow{
            "entities.smi",
            "1-2.5 Tom &amp; Jerry &eacute;&#233;&#xE9; 1 &lt; 2 &quot;x&quot; | 2.5-12.5 &nbsp;",
            "1-2.5 Tom & Jerry ééé 1 &lt; 2 \"x\"", "7 entities (first on line 10)"},
        WildRow{"languages-apart.smi", "1-2.5 One | 2.5-1.2 &nbsp; | 1.2-2.6 Un | 2.6-12.6 &nbsp;",
                "1-2.5 One",
                "2 entities (first on line 11), 1 other language kept behind the body (line 1)"},
        WildRow{"lone-bracket.smi", "1-2.5 1< 2 and 3 >2 | 2.5-12.5 &nbsp;",
                "1-2.5 1 &lt; 2 and 3 > 2", "1 lone \"<\" (line 10), 1 entity (line 11)"},
        WildRow{"no-body.smi", "CORRUPT", "1-2.5 One | 3-4 Two\r\nlines",
                "1 missing BODY tag (line 9), 2 entities (first on line 10), 1 closing tag (line "
                "13), 1 missing end of the body (line 14)"},
        WildRow{"no-end.smi", "CORRUPT 1-2.5 One | 2.5-3 &nbsp; | 3-4 Two\r\nlines",
                "1-2.5 One | 3-4 Two\r\nlines",
                "2 entities (first on line 11), 1 missing end of the body (line 14)"},
        WildRow{"no-head.smi", "CORRUPT", "1-2.5 One | 3-4 Two\r\nlines",
                "1 missing BODY tag (line 1), 2 entities (first on line 2), 1 missing end of the "
                "body (line 5)"},
        WildRow{"one-line.smi", "CORRUPT", "1-2.5 One | 3-4 Two\r\nlines",
                "1 title on the line of the BODY tag (line 1), 2 entities (first on line 1)"},
        WildRow{"other-breaks.smi", "1-2.5 One<br/>two\r\nthree | 2.5-12.5 &nbsp;",
                "1-2.5 One\r\ntwo\r\nthree",
                "2 line breaks in another form (first on line 10), 1 entity (line 11)"},
        WildRow{"quoted-class.smi", "1-2.5 One | 2.5-3 &nbsp; | 3-4 Two\r\nlines | 4-14 &nbsp;",
                "1-2.5 One | 3-4 Two\r\nlines", "2 entities (first on line 11)"},
        WildRow{"quoted-start.smi", "0-0 One | 0-0 &nbsp; | 0-0 Two\r\nlines | 0-10 &nbsp;",
                "1-2.5 One | 3-4 Two\r\nlines",
                "4 times with quotes or a unit (first on line 10), 2 entities (first on line 11)"},
        WildRow{"start-with-unit.smi",
                "1-0.0025 One | 0.0025-0 &nbsp; | 0-4 Two\r\nlines | 4-14 &nbsp;",
                "1-2.5 One | 3-4 Two\r\nlines",
                "4 times with quotes or a unit (first on line 10), 2 entities (first on line 11)"},
        WildRow{"sync-on-the-body-line.smi", "2.5-3 &nbsp; | 3-4 Two\r\nlines | 4-14 &nbsp;",
                "1-2.5 One | 3-4 Two\r\nlines",
                "1 title on the line of the BODY tag (line 9), 2 entities (first on line 10)"},
        WildRow{"sync-without-start.smi", "CORRUPT", "1-2.5 One more",
                "1 SYNC tag without a time (line 11), 1 entity (line 12)"},
        WildRow{"two-languages.smi",
                "1-2.5 OneUn | 2.5-3 &nbsp;&nbsp; | 3-4 TwoDeux | 4-14 &nbsp;&nbsp;",
                "1-2.5 One | 3-4 Two",
                "4 entities (first on line 11), 1 other language kept behind the body (line 1)"}),
    [](const testing::TestParamInfo<WildRow>& row) {
        std::string name = row.param.file;
        for (char& c : name)
            c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
        return name;
    });

struct RateRow {
    const char* text;
    std::optional<double> rate;
};

class NamedFrameRate : public testing::TestWithParam<RateRow> {};

TEST_P(NamedFrameRate, IsTold) {
    EXPECT_EQ(MendMicroDvd(GetParam().text).frameRate, GetParam().rate) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Rows, NamedFrameRate,
                         testing::Values(RateRow{"{1}{1}23.976\r\n{25}{50}x\r\n", 23.976},
                                         RateRow{"{0}{0}25 fps\r\n", 25},
                                         RateRow{"{1}{1}1\r\n", std::nullopt},
                                         RateRow{"{1}{1}1000000\r\n", std::nullopt},
                                         RateRow{"{1}{1}nan\r\n", std::nullopt},
                                         RateRow{"{1}{1}twenty-five\r\n", std::nullopt},
                                         RateRow{"{2}{30}25\r\n", std::nullopt},
                                         RateRow{"{25}{50}x\r\n{1}{1}25\r\n", std::nullopt},
                                         RateRow{"", std::nullopt}));

constexpr const char* TwoLanguages =
    "<SAMI><HEAD><STYLE><!-- .EN {Name: English;} .FR {lang: fr-FR;} --></STYLE></HEAD>\r\n"
    "<BODY>\r\n"
    "<SYNC Start=1000><P Class=EN>One<P Class=FR>Un\r\n"
    "<SYNC Start=2000><P Class=EN>&nbsp;<P Class=FR>&nbsp;\r\n"
    "<SYNC Start=3000><P Class=fr>Deux\r\n"
    "</BODY></SAMI>\r\n";

TEST(MendSami, NamesTheLanguages) {
    const auto languages = MendSami(TwoLanguages).languages;
    ASSERT_EQ(languages.size(), 2U);
    EXPECT_EQ(languages[0].className, "EN");
    EXPECT_EQ(languages[0].name, "English");
    EXPECT_EQ(languages[0].titles, 1);
    EXPECT_EQ(languages[1].name, "FR");
    EXPECT_EQ(languages[1].titles, 2);
}

TEST(MendSami, GivesTheLanguageThatIsAskedFor) {
    EXPECT_EQ(Shown(LoadText("x.smi", MendSami(TwoLanguages, 0).text)), "1-2 One");
    EXPECT_EQ(Shown(LoadText("x.smi", MendSami(TwoLanguages, 1).text)), "1-2 Un | 3-13 Deux");
    EXPECT_EQ(MendSami(TwoLanguages, 7).text, MendSami(TwoLanguages, 0).text);
}

TEST(MendSami, KeepsTheOthersBehindTheBody) {
    Loaded loaded = LoadText("x.smi", MendSami(TwoLanguages, 1).text);
    std::string written;
    WriteFile(*loaded.result.format, loaded.titles, 25, loaded.style, written);
    EXPECT_NE(written.find("</BODY>\r\n<BODY>\r\n<SYNC Start=1000><P Class=EN>One\r\n"
                           "<SYNC Start=2000><P Class=EN><br>\r\n</BODY></SAMI>\r\n"),
              std::string::npos)
        << written;
    EXPECT_EQ(Shown(LoadText("x.smi", written)), "1-2 Un | 3-13 Deux");
    // And from there they can be had again.
    const MendedText english = MendSami(written, 1);
    ASSERT_EQ(english.languages.size(), 2U);
    EXPECT_EQ(english.languages[1].name, "English");
    EXPECT_EQ(Shown(LoadText("x.smi", english.text)), "1-2 One");
}

TEST(MendSami, GoesOnBehindTheEndOfABody) {
    EXPECT_EQ(Shown(LoadText("x.smi", MendSami("<BODY>\r\n<SYNC Start=1000><P>A\r\n"
                                               "<SYNC Start=2000><P><br>\r\n</BODY></SAMI>\r\n"
                                               "<SAMI><HEAD><TITLE>Part 2</TITLE></HEAD><BODY>\r\n"
                                               "<SYNC Start=3000><P>B\r\n</BODY></SAMI>\r\n")
                                          .text)),
              "1-2 A | 3-13 B");
}

struct LanguagesRow {
    std::string_view file;
    bool several;
};

TEST(HoldsSeveralLanguages, LooksAtTheClasses) {
    for (const LanguagesRow& row :
         {LanguagesRow{"", false}, LanguagesRow{"=", false}, LanguagesRow{"class=", false},
          LanguagesRow{"<P Class=A>x<P Class=a>y<P>z", false},
          LanguagesRow{"<P Class=A>x<P Class=\"A\">y", false},
          LanguagesRow{"<P Class=A>x<P Class=>y", false},
          LanguagesRow{"<P Class=A>x<p CLASS=B>y", true}})
        EXPECT_EQ(HoldsSeveralLanguages(row.file), row.several) << row.file;
}

TEST(MendSummary, CountsEachKind) {
    const std::vector<Mend> mends{{"hole", "holes", 1, 4}, {"tear", "tears", 3, 7}};
    EXPECT_EQ(MendSummary(mends, false), "1 hole, 3 tears");
    EXPECT_EQ(MendSummary(mends, true), "1 hole (line 4), 3 tears (first on line 7)");
    EXPECT_EQ(MendSummary({}, true), "");
}

struct OfferRow {
    const char* what;
    const char* name;
    std::string_view file;
    /// Empty: nothing is offered.
    const char* question;
};

class MendingOffers : public testing::TestWithParam<OfferRow> {};

TEST_P(MendingOffers, Asks) {
    const Loaded loaded = LoadText(GetParam().name, GetParam().file);
    EXPECT_EQ(loaded.result.offer ? loaded.result.offer->question : "", GetParam().question)
        << GetParam().what;
}

#define ONE "00:00:01,000 --> 00:00:02,000\r\n"
#define TWO "00:00:03,000 --> 00:00:04,000\r\n"

INSTANTIATE_TEST_SUITE_P(
    Rows, MendingOffers,
    testing::Values(
        OfferRow{"a right file", "x.srt", "1\r\n" ONE "A\r\n\r\n2\r\n" TWO "B\r\n\r\n", ""},
        OfferRow{"words that only look like times", "x.srt", "1\r\n" ONE "a --> b & c\r\n\r\n", ""},
        OfferRow{"an empty file", "x.srt", "", ""},
        OfferRow{"damage that nothing can mend", "x.srt", "words\r\n", ""},
        OfferRow{"the message", "x.srt", "1\r\n" ONE "A\r\n\r\n\r\n2\r\n" TWO "B\r\n",
                 "A tolerant reading finds 2 titles instead of 1 (1 blank line between blocks). "
                 "Use it?"},
        OfferRow{"a block in a text", "x.srt", "1\r\n" ONE "A\r\n2\r\n" TWO "B\r\n",
                 "A tolerant reading finds 2 titles instead of 1 (1 missing empty line between "
                 "blocks). Use it?"},
        OfferRow{
            "times of 0", "x.srt", "1\r\n00:00:01 --> 00:00:02\r\nA\r\n",
            "A tolerant reading finds other times for 1 of 1 title (1 line of times in another "
            "form). Use it?"},
        OfferRow{"damage behind all titles", "x.srt", "1\r\n" ONE "A\r\n\r\n\r\n",
                 "A tolerant reading finds the same 1 title, and no damage (1 blank line between "
                 "blocks). Use it?"},
        OfferRow{"a title without length", "x.sub", "{25}{25}A\r\n", ""},
        OfferRow{"two languages that are read well", "x.smi",
                 "<BODY>\r\n<SYNC Start=1000><P Class=A>a\r\n<SYNC Start=2000><P Class=A><br>\r\n"
                 "</BODY>\r\n<BODY>\r\n<SYNC Start=1000><P Class=B>b\r\n</BODY>\r\n",
                 "A tolerant reading finds titles in 2 languages. Which of them are to be edited?"},
        OfferRow{"two languages in one", "x.smi",
                 "<BODY>\r\n<SYNC Start=1000><P Class=A>a<P Class=B>b\r\n</BODY>\r\n",
                 "A tolerant reading finds titles in 2 languages (1 other language kept behind the "
                 "body). Which of them are to be edited?"},
        OfferRow{"a second class that says nothing", "x.smi",
                 "<BODY>\r\n<SYNC Start=1000><P Class=A>a<P Class=B>\r\n<SYNC Start=2000><P "
                 "Class=A><br>\r\n</BODY>\r\n",
                 ""},
        OfferRow{"a second class without titles", "x.smi",
                 "<BODY>\r\n<SYNC Start=1000><P Class=A>a\r\n<SYNC Start=2000><P Class=B>\r\n"
                 "</BODY>\r\n",
                 ""},
        OfferRow{"a format without a tolerant reading of such a file", "x.smi",
                 "<SAMI><BODY>\r\n<SYNC Start=0><P>A\r\n</BODY>\r\n", ""}));

TEST(MendingOffer, IsTaken) {
    Loaded loaded = LoadText("x.srt", "1\r\n" ONE "A\r\n\r\n\r\n2\r\n" TWO "B\r\n");
    ASSERT_TRUE(loaded.result.offer);
    TakeOffer(*loaded.result.offer, 0, loaded.titles, loaded.style);
    EXPECT_EQ(Shown(loaded.titles), "1-2 A | 3-4 B");
    EXPECT_TRUE(loaded.titles.UndoEnabled());
    EXPECT_EQ(loaded.titles.UndoCount(), 0);
}

TEST(MendingOffer, OffersLanguagesThatHaveTitles) {
    Loaded loaded = LoadText("x.smi", TwoLanguages);
    ASSERT_TRUE(loaded.result.offer);
    ASSERT_EQ(loaded.result.offer->languages.size(), 2U);
    TakeOffer(*loaded.result.offer, loaded.result.offer->languages[1].number, loaded.titles,
              loaded.style);
    EXPECT_EQ(Shown(loaded.titles), "1-2 Un | 3-13 Deux");
}

struct TrimRow {
    std::string_view text;
    std::string_view trimmed;
};

TEST(TrimWide, TakesBlanksOfAllKindsOffBothEnds) {
    using namespace std::string_view_literals;
    for (const TrimRow& row :
         {TrimRow{"", ""}, TrimRow{" ", ""}, TrimRow{"\xC2\xA0 a b\t", "a b"},
          TrimRow{"\xEF\xBB\xBF\xE2\x80\x8B"
                  "1\xE3\x80\x80",
                  "1"},
          TrimRow{"\xA0", "\xA0"}, TrimRow{"\xC3\xA9", "\xC3\xA9"}, TrimRow{"\x1A\0"sv, "\0"sv}})
        EXPECT_EQ(TrimWide(row.text), row.trimmed);
}

} // namespace
