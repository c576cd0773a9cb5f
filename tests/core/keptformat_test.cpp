// Formats that are kept exactly: what is loaded is saved byte for byte, and when titles
// are moved nothing but their times changes.
#include "formattesting.h"

#include <gtest/gtest.h>

#include <cctype>

namespace {

/// The titles loaded from one name, saved under another.
std::string SavedAs(const Loaded& loaded, const std::string& name) {
    const TestFolder folder;
    EXPECT_TRUE(SaveTitles(folder / name, "windows-1252", loaded.titles, loaded.style, {}).written);
    return FileText(folder / name);
}

void Shift(SUBTITLES& titles, double by) {
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        titles.SetTimes(i, titles.StartTime(i) + by, titles.EndTime(i) + by);
}

std::string WithoutTimes(std::string text) {
    std::erase_if(text, [](unsigned char c) { return std::isdigit(c) != 0 || c == ':'; });
    return text;
}

struct Row {
    const char* what;
    const char* name;
    std::string_view file;
    std::int32_t titles;
};
std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name << ": " << row.what;
}

class Kept : public testing::TestWithParam<Row> {
  protected:
    static Loaded Load(std::string_view file) {
        Loaded loaded = LoadText(GetParam().name, file);
        EXPECT_EQ(loaded.result.outcome, LoadOutcome::Complete);
        EXPECT_EQ(loaded.titles.Count(), GetParam().titles);
        return loaded;
    }
    static std::string Saved(const Loaded& loaded) { return SavedAs(loaded, GetParam().name); }
};

TEST_P(Kept, IsSavedAsItWasLoaded) {
    EXPECT_EQ(Saved(Load(GetParam().file)), GetParam().file);
}

TEST_P(Kept, IsTheSameWhenMovedThereAndBack) {
    Loaded loaded = Load(GetParam().file);
    Shift(loaded.titles, 1);
    const std::string moved = Saved(loaded);
    if (GetParam().titles > 0) {
        EXPECT_NE(moved, GetParam().file);
    }
    EXPECT_EQ(WithoutTimes(moved), WithoutTimes(std::string(GetParam().file)));
    Shift(loaded.titles, -1);
    EXPECT_EQ(Saved(loaded), GetParam().file);

    Loaded again = Load(moved);
    Shift(again.titles, -1);
    EXPECT_EQ(Saved(again), GetParam().file);
}

TEST_P(Kept, HoldsItsTitlesThroughChangesThatAreUndone) {
    Loaded loaded = Load(GetParam().file);
    SUBTITLES& titles = loaded.titles;
    for (std::int32_t i = titles.Count(); i > 0 && titles.UndoCount() < 90; --i)
        titles.Delete(i);
    titles.Insert(1, 1, 2, "new");
    titles.Text(1, "newer");
    while (titles.UndoCount() > 0)
        titles.Undo();
    EXPECT_EQ(Saved(loaded), GetParam().file);
}

TEST_P(Kept, ReadsWhatRemainsWhenTitlesComeAndGo) {
    for (std::int32_t i = 1; i <= GetParam().titles; ++i) {
        Loaded loaded = Load(GetParam().file);
        const std::vector<TestTitle> all = loaded.Titles();
        loaded.titles.Delete(i);
        std::vector<TestTitle> expected = all;
        expected.erase(expected.begin() + (i - 1));
        EXPECT_EQ(LoadText(GetParam().name, Saved(loaded)).Titles(), expected) << i;
        loaded.titles.Undo();
        loaded.titles.Insert(i, 0.25, 0.5, "one\r\n<i>two</i>");
        expected = all;
        expected.insert(expected.begin() + (i - 1), {0.25, 0.5, "one\r\n<i>two</i>"});
        EXPECT_EQ(LoadText(GetParam().name, Saved(loaded)).Titles(), expected) << i;
    }
}

TEST_P(Kept, KeepsItsTextsInOtherFormats) {
    const Loaded loaded = Load(GetParam().file);
    for (const char* name : {"x.srt", "x.smi", "x.vtt", "x.ass", "x.ssa"}) {
        const Loaded other = LoadText(name, SavedAs(loaded, name));
        EXPECT_EQ(other.result.outcome, LoadOutcome::Complete) << name;
    }
}

constexpr const char* Script = "[Script Info]\n; a comment\nScriptType: v4.00+\n\n"
                               "[V4+ Styles]\nFormat: Name, Fontname\nStyle: Default,Arial\n\n"
                               "[Events]\n"
                               "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, "
                               "Effect, Text\n";

const std::string ScriptFile =
    std::string(Script) +
    "Comment: 0,0:00:00.00,0:00:09.00,Default,,0,0,0,,not shown\n"
    "Dialogue: 0,0:00:01.00,0:00:02.50,Default,,0,0,0,,Hello,\\Nworld\n"
    "Dialogue: 1,0:00:03.00,0:00:04.00,Sign,Bob,10,0,7,fx,{\\pos(1,2)\\i1}a{\\i1}b{\\i0}\n"
    "Comment: 0,0:00:00.00,0:00:09.00,Default,,0,0,0,,nor this\n\n"
    "Dialogue: 0,0:00:04.00,0:00:05.00,Default,,0,0,0,,{\\k20}la{\\k30}la <i>x</i>\n"
    "Dialogue: 0,0:00:05.00,0:00:06.00,Default,,0,0,0,,\n\n"
    "[Fonts]\nfontname: a.ttf\nDialogue: 0,x\n\n[Graphics]\nfilename: a.bmp\n!!!\n";

const std::string OwnFields = "[events]\r\nformat: Layer , Start, End, Text\r\n"
                              "Format:Start,End,Text\r\n"
                              "dialogue:  00:00:01.000 ,\t0:00:02.00 , a,b \r\n"
                              "  Dialogue: 0:00:03.10,0:00:04,\r\n";

constexpr const char* TimedTextFile =
    "\xEF\xBB\xBF<?xml version='1.0' encoding=\"UTF-8\"?>\n<!-- <p begin='0s'> -->\n"
    "<tt xmlns=\"http://www.w3.org/ns/ttml\" xmlns:s='http://www.w3.org/ns/ttml#styling'\n"
    "    xml:lang=\"en\">\n<head><styling>\n<style xml:id=\"it\" s:fontStyle=\"italic\"/>\n"
    "</styling><layout><region xml:id='r'/></layout></head>\n<body region=\"r\">\n  <div>\n"
    "    <p xml:id=\"a\"\n begin = \"00:00:01.500\" end='00:00:02.250' style=\"it\">A<br/>\n"
    "      B &amp; <span style=\"it\">C</span> &#233;</p>\n"
    "    <!-- between -->\n    <p end=\"00:00:04\" begin=\"00:00:03\"><![CDATA[<x>]]></p>\n"
    "    <p begin=\"00:00:05.1234567\" end=\"00:00:06.5\"/>\n  </div>\n  <div>\n"
    "    <p begin=\"00:00:07.000\" end=\"00:00:08.000\" a='>'>\n      <metadata>m</metadata>D\n"
    "    </p>\n    <p>never</p>\n  </div>\n</body>\n</tt>\n";

constexpr const char* CountedTimes =
    "<t:tt xmlns:t=\"http://www.w3.org/ns/ttml\" xmlns:p=\"http://www.w3.org/ns/ttml#parameter\"\n"
    " p:frameRate=\"25\" p:tickRate=\"10000\" xmlns:y=\"http://www.w3.org/ns/ttml#styling\">"
    "<t:body><t:div><t:p begin=\"36f\" dur=\"25f\">A</t:p><t:p begin=\"30000t\" "
    "end=\"35000t\">B</t:p>"
    "<t:p dur='1.5s' begin='4000ms'>C</t:p><t:p begin=\"00:00:06:05\" end=\"00:00:07:10\">D</t:p>"
    "<t:p begin='9.50s' end='12s'>E</t:p></t:div></t:body></t:tt>";

constexpr const char* TimedSpans =
    "<tt><body><div><p>\n<span begin=\"1s\" end=\"2s\">A</span>\n"
    "<span begin=\"2s\" end=\"3s\">B<span>C</span></span> words</p>"
    "<p begin=\"4s\" end=\"6s\">D <span begin=\"0.5s\">E</span></p></div></body></tt>";

const Row Rows[] = {
    {"nothing but the signature", "x.vtt", "WEBVTT", 0},
    {"a header alone", "x.vtt", "WEBVTT - words\nKind: captions\n\nNOTE nothing\n", 0},
    {"CR LF", "x.vtt",
     "WEBVTT\r\n\r\n00:00:01.000 --> 00:00:02.000\r\nA\r\nB\r\n\r\n"
     "00:00:03.000 --> 00:00:04.000\r\nC\r\n",
     2},
    {"CR", "x.vtt", "WEBVTT\r\r00:00:01.000 --> 00:00:02.000\rA\rB\r\r", 1},
    {"all line ends", "x.vtt",
     "WEBVTT\r\n\n00:00:01.000 --> 00:00:02.000\nA\r\nB\rC\n\r00:00:03.000 --> 00:00:04.000\r\nD",
     2},
    {"header, style, region, notes, identifiers, settings", "x.vtt",
     "WEBVTT header\nX: y\n\nSTYLE\n::cue { color: red }\n\nREGION\nid:a\nwidth:40%\n\nNOTE one\n"
     "more\n\n1\n00:00:01.000 --> 00:00:02.000 line:0 position:20% align:start region:a\nA\n\n"
     "NOTE\nbetween\n\ntwo words\n00:00:02.000\t-->\t00:00:03.500\nB\n\n\n\n"
     "00:00:04.000-->00:00:05.000   \nC\n\nNOTE at the end\n",
     3},
    {"short times, then hours", "x.vtt",
     "WEBVTT\n\n59:58.000 --> 59:59.999\nA\n\n01:00:00.500 --> 100:00:01.000\nB\n\n"
     "1:00:00:00.000\nno times\n",
     2},
    {"hours before short times", "x.vtt",
     "WEBVTT\n\n00:00:01.000 --> 00:02.000\nA\n\n00:03.000 --> 0001:00:01.000\nB\n", 2},
    {"tags and entities", "x.vtt",
     "WEBVTT\n\n00:01.000 --> 00:02.000\n<v.loud Fred &amp; Bob>a &lt;b&gt; &amp; c</v> d&nbsp;e\n"
     "<i.x>i</i> <b>b</b> <u>u</u> <c.red.bg_blue>c</c> <lang en>l</lang> "
     "<ruby>r<rt>t</rt></ruby> <font>AT&T &#233;&#xE9; &unknown; a<b a>b\n",
     1},
    {"entities by their names", "x.vtt",
     "WEBVTT\n\n00:01.000 --> 00:02.000\n&quot;a&apos;&hellip;&mdash;&eacute; &quot &eacute &x;\n",
     1},
    {"times within", "x.vtt",
     "WEBVTT\n\n00:01.000 --> 00:05.000\na <00:02.000><c>b</c> <00:00:03.500>c <9>\n", 1},
    {"no text", "x.vtt", "WEBVTT\n\n00:01.000 --> 00:02.000\n\n00:03.000 --> 00:04.000", 2},
    {"no empty line between", "x.vtt",
     "WEBVTT\n00:01.000 --> 00:02.000\nA\n00:03.000 --> 00:04.000\nB\n", 2},
    {"a byte-order mark", "x.vtt", "\xEF\xBB\xBFWEBVTT\n\n00:01.000 --> 00:02.000\n\xC3\xA9\n", 1},
    {"blanks at the ends", "x.vtt", "WEBVTT \n\n 00:01.000 --> 00:02.000 \n  A  \n \nB\n", 1},
    {"Timed Text", "x.ttml", TimedTextFile, 4},
    {"under its other names", "x.dfxp", TimedTextFile, 4},
    {"frames, ticks, durations, prefixes", "x.xml", CountedTimes, 5},
    {"timed spans", "x.ttml", TimedSpans, 3},
    {"no titles", "x.ttml", "<tt><body><div/></body></tt>", 0},
    {"a script", "x.ass", ScriptFile, 4},
    {"a script under the other name", "x.ssa", ScriptFile, 4},
    {"a format line of its own", "x.ssa", OwnFields, 2},
    {"no title", "x.ass", Script, 0},
    {"the last line without an end", "x.ass",
     "[Events]\nDialogue: 0,0:00:01.00,0:00:02.00,,,,,,,a\\hb\\nc\\{d\\}", 1},
    {"all line ends", "x.ass",
     "[Events]\r\nDialogue: 0,0:00:01.00,0:00:02.00,,,,,,,a\n"
     "Dialogue: 0,0:00:03.00,0:00:04.00,,,,,,,b\rDialogue: 0,0:00:05.00,0:00:06.00,,,,,,,c\r\n\r\n",
     3},
};

INSTANTIATE_TEST_SUITE_P(Rows, Kept, testing::ValuesIn(Rows));

} // namespace
