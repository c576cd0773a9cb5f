#include "formats/timedtext.h"

#include "formats/timedtextclock.h"
#include "formattesting.h"

#include <gtest/gtest.h>

namespace {

using Titles = std::vector<TestTitle>;
constexpr const char* Corrupt = "File is corrupt or not in Timed Text format.";

struct ReadRow {
    const char* what;
    /// What stands in the body.
    std::string body;
    Titles titles;
    const char* message = "";
};
std::ostream& operator<<(std::ostream& out, const ReadRow& row) {
    return out << row.what;
}

std::string File(const std::string& body) {
    return "<?xml version=\"1.0\"?>\n<tt xmlns:tts=\"http://www.w3.org/ns/ttml#styling\"><head>"
           "<styling><style xml:id=\"i\" tts:fontStyle=\"italic\"/>"
           "<style xml:id=\"ib\" style=\"i\" tts:fontWeight=\"bold\"/></styling></head>\n"
           "<body>" +
           body + "</body></tt>\n";
}

class TimedTextRead : public testing::TestWithParam<ReadRow> {};

TEST_P(TimedTextRead, Gives) {
    const Loaded loaded = LoadText("x.ttml", File(GetParam().body));
    EXPECT_EQ(loaded.Titles(), GetParam().titles);
    EXPECT_EQ(loaded.result.message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TimedTextRead,
    testing::Values(
        ReadRow{"nothing", "", {}},
        ReadRow{"white space as one blank",
                "<div><p begin=\"1s\" end=\"2s\">\n  A\n  B <br/>\n C</p></div>",
                {{1, 2, "A B\r\nC"}}},
        ReadRow{"white space kept",
                "<div xml:space=\"preserve\"><p begin=\"1s\" end=\"2s\"> A\n B</p>"
                "<p xml:space=\"default\" begin=\"1s\" end=\"2s\"> A\n B</p></div>",
                {{1, 2, " A\r\n B"}, {1, 2, "A B"}}},
        ReadRow{"spans",
                "<p begin=\"1s\" end=\"2s\"><span tts:fontStyle=\"italic\">a <span "
                "tts:fontStyle=\"italic\" tts:fontWeight=\"bold\">b</span></span> <span>c</span>"
                "<span style=\"i\">d</span><span style=\"x ib\">e</span></p>",
                {{1, 2, "<i>a <b>b</b></i> c<i>d</i><i><b>e</b></i>"}}},
        ReadRow{"times of those around",
                "<div begin=\"10s\" end=\"20s\"><p begin=\"1s\" dur=\"2s\">A</p>"
                "<p end=\"5s\">B</p><p>C</p><p begin=\"1s\" end=\"30s\">D</p></div><p>E</p>",
                {{11, 13, "A"}, {10, 15, "B"}, {10, 20, "C"}, {11, 20, "D"}}},
        ReadRow{
            "one after the other",
            "<div begin=\"10s\" timeContainer=\"seq\"><p dur=\"2s\">A</p><p begin=\"1s\" "
            "dur=\"2s\">B</p><p begin=\"1s\" end=\"3s\">C</p><p begin=\"1s\">D</p><p>E</p></div>"
            "<p begin=\"1s\" end=\"2s\">F</p>",
            {{10, 12, "A"},
             {13, 15, "B"},
             {16, 18, "C"},
             {19, 29, "D"},
             {19, 29, "E"},
             {1, 2, "F"}}},
        ReadRow{
            "groups one after the other",
            "<div timeContainer=\"seq\"><div><p begin=\"1s\" end=\"2s\">A</p><p end=\"3s\">B</p>"
            "</div><div dur=\"5s\"><p begin=\"1s\" end=\"2s\">C</p></div>"
            "<p dur=\"1s\">D</p></div>",
            {{1, 2, "A"}, {0, 3, "B"}, {4, 5, "C"}, {8, 9, "D"}}},
        ReadRow{"spans one after the other",
                "<p timeContainer=\"seq\"><span dur=\"1s\">A</span><span "
                "dur=\"1s\">B</span></p>",
                {{0, 1, "A"}, {1, 2, "B"}}},
        ReadRow{"no end", "<p begin=\"1s\">A</p>", {{1, 11, "A"}}},
        ReadRow{"times that are none",
                "<p begin=\"x\">A</p><p begin=\"1s\" end=\"2s\">B</p>",
                {{1, 2, "B"}},
                Corrupt},
        ReadRow{"no XML", "<p>", {}, Corrupt}));

TEST(TimedTextRead, NeedsItsRootElement) {
    EXPECT_EQ(LoadText("x.xml", "<a><body><p begin='1s'>A</p></body></a>").result.message, Corrupt);
    EXPECT_EQ(LoadText("x.xml", "").result.message, Corrupt);
}

TEST(TimedTextRead, IsRecognisedByItsRootElement) {
    EXPECT_STREQ(LoadText("x", File("")).result.format->name, "Timed Text");
    EXPECT_STREQ(LoadText("x.txt", "<!-- <SAMI> -->\n<t:tt/>").result.format->name, "Timed Text");
    for (const char* other : {"<SAMI>\n<tt>", "<ttx>", "<!-- <tt>", "<?xml?>\n<a><tt>", "<"})
        EXPECT_STREQ(LoadText("x", other).result.format->name, "SAMI") << other;
}

TEST(TimedTextRead, TakesElementsThatNestDeep) {
    std::string body;
    for (int i = 0; i < 100'000; ++i)
        body += "<div><p begin='1s' end='2s'>";
    EXPECT_EQ(LoadText("x.ttml", File(body)).titles.Count(), 0);
    std::string spans = "<p begin='1s' end='2s'>";
    for (int i = 0; i < 20'000; ++i)
        spans += "<span>";
    spans += "A";
    for (int i = 0; i < 20'000; ++i)
        spans += "</span>";
    EXPECT_EQ(LoadText("x.ttml", File(spans + "</p>")).Titles(), (Titles{{1, 2, "A"}}));
}

struct TimeRow {
    const char* text;
    double seconds;
    /// A second and a half later.
    const char* later;
};

class TimedTextTimes : public testing::TestWithParam<TimeRow> {};

TEST_P(TimedTextTimes, AreReadAndWritten) {
    const TimedTextRates rates{25, 1000};
    const auto time = ParseTimedTextTime(GetParam().text, rates);
    ASSERT_TRUE(time) << GetParam().text;
    EXPECT_NEAR(time->seconds, GetParam().seconds, 1e-9) << GetParam().text;
    std::string same;
    AppendTimedTextTime(same, time->seconds, *time, rates);
    EXPECT_EQ(same, GetParam().text);
    std::string later;
    AppendTimedTextTime(later, time->seconds + 1.5, *time, rates);
    EXPECT_EQ(later, GetParam().later);
}

INSTANTIATE_TEST_SUITE_P(Rows, TimedTextTimes,
                         testing::Values(TimeRow{"00:00:01.250", 1.25, "00:00:02.750"},
                                         TimeRow{"01:00:00", 3600, "01:00:01.5"},
                                         TimeRow{"00:00:00.1234567", 0.1234567, "00:00:01.6234567"},
                                         TimeRow{"00:00:01:24", 1.96, "00:00:03:12"},
                                         TimeRow{"1.25s", 1.25, "2.75s"}, TimeRow{"3s", 3, "4.5s"},
                                         TimeRow{"250ms", 0.25, "1750ms"},
                                         TimeRow{"0.5m", 30, "0.525m"},
                                         TimeRow{"1h", 3600, "1.0004167h"},
                                         TimeRow{"50f", 2, "88f"}, TimeRow{"500t", 0.5, "2000t"}));

TEST(TimedTextTimes, AreNothingElse) {
    for (const char* text : {"", "s", "1", "1.s", ".5s", "-1s", "1:02", "00:00:01:", "1x", "1 s",
                             "00:00:01.5:03", "inf"})
        EXPECT_FALSE(ParseTimedTextTime(text, {})) << text;
}

TEST(TimedTextTimes, FollowTheRates) {
    const Loaded loaded = LoadText(
        "x.ttml", "<tt xmlns:ttp='x' ttp:frameRate='30' ttp:frameRateMultiplier='1000 1001'><body>"
                  "<p begin='30f' end='00:00:02:00'>A</p></body></tt>");
    EXPECT_NEAR(loaded.titles.StartTime(1), 1.001, 1e-9);
    EXPECT_EQ(loaded.titles.EndTime(1), 2);
    const Loaded ticks =
        LoadText("x.ttml", "<tt ttp:tickRate='100'><body><p begin='150t'/></body></tt>");
    EXPECT_EQ(ticks.titles.StartTime(1), 1.5);
}

/// What a file becomes of which the titles were changed.
std::string Changed(const std::string& file, void (*change)(SUBTITLES& titles)) {
    Loaded loaded = LoadText("x.ttml", file);
    change(loaded.titles);
    std::string out;
    WriteFile(*loaded.result.format, loaded.titles, 25, loaded.style, out);
    return out;
}

TEST(TimedTextWrite, PatchesWhatChanged) {
    const std::string file = File("\n<div begin=\"10s\">\n"
                                  "  <p begin=\"1s\" region=\"x\" end=\"2s\">A <x/></p>\n"
                                  "  <p dur=\"1s\" begin=\"3s\"/>\n"
                                  "  <p end=\"5s\">C</p>\n</div>\n");
    EXPECT_EQ(Changed(file,
                      [](SUBTITLES& titles) {
                          titles.SetTimes(1, 11.25, 12);
                          titles.SetTimes(2, 14, 16);
                          titles.Text(2, "<i>a<b>b</i>c</b>\r\n<&>");
                          titles.SetTimes(3, 10.5, 15.5);
                      }),
              File("\n<div begin=\"10s\">\n"
                   "  <p begin=\"1.25s\" region=\"x\" end=\"2s\">A <x/></p>\n"
                   "  <p dur=\"2s\" begin=\"4s\"><span tts:fontStyle=\"italic\">a</span>"
                   "<span tts:fontStyle=\"italic\" tts:fontWeight=\"bold\">b</span>"
                   "<span tts:fontWeight=\"bold\">c</span><br/>&lt;&amp;&gt;</p>\n"
                   "  <p begin=\"00:00:00.500\" end=\"5.5s\">C</p>\n</div>\n"));
}

TEST(TimedTextWrite, PutsTitlesInAndTakesThemOut) {
    const std::string file = File("<div>\n  <p begin=\"1s\" end=\"2s\">A</p>\n"
                                  "  <p begin=\"3s\" end=\"4s\">B</p>\n</div>");
    const std::string added = "<p begin=\"00:00:05.000\" end=\"00:00:06.000\">x</p>";
    EXPECT_EQ(Changed(file, [](SUBTITLES& titles) { titles.Insert(1, 5, 6, "x"); }),
              File("<div>\n  " + added +
                   "\n  <p begin=\"1s\" end=\"2s\">A</p>\n"
                   "  <p begin=\"3s\" end=\"4s\">B</p>\n</div>"));
    EXPECT_EQ(Changed(file, [](SUBTITLES& titles) { titles.Insert(3, 5, 6, "x"); }),
              File("<div>\n  <p begin=\"1s\" end=\"2s\">A</p>\n"
                   "  <p begin=\"3s\" end=\"4s\">B</p>\n  " +
                   added + "\n</div>"));
    EXPECT_EQ(Changed(file, [](SUBTITLES& titles) { titles.Delete(1); }),
              File("<div>\n  <p begin=\"3s\" end=\"4s\">B</p>\n</div>"));
    EXPECT_EQ(Changed(file,
                      [](SUBTITLES& titles) {
                          titles.DeleteAll({1, 2});
                          titles.Insert(1, 5, 6, "x");
                      }),
              File("<div>\n  " + added + "\n</div>"));
    EXPECT_EQ(Changed(File("<div></div>"), [](SUBTITLES& titles) { titles.Insert(1, 5, 6, "x"); }),
              File("<div>" + added + "</div>"));
    // A title that was moved in front of another keeps its words and its times.
    EXPECT_EQ(Changed(file,
                      [](SUBTITLES& titles) {
                          const TitleExtra extra = titles.Extra(2);
                          titles.Delete(2);
                          titles.Insert(1, 5, 6, "x", extra);
                      }),
              File("<div>\n  <p begin=\"5s\" end=\"6s\">x</p>\n"
                   "  <p begin=\"00:00:01.000\" end=\"00:00:02.000\">A</p>\n</div>"));
}

TEST(TimedTextWrite, MovesWhatFollowsOneAnother) {
    const auto file = [](const std::string& first, const std::string& rest) {
        return File("<div timeContainer=\"seq\"><p begin=\"" + first + "\" dur=\"1s\">A</p>" +
                    rest + "</div>");
    };
    const std::string second = "<p begin=\"1s\" dur=\"1s\">B</p>";
    const std::string third = "<p dur=\"1s\">C</p>";
    const std::string whole = file("1s", second + third);
    EXPECT_EQ(Changed(whole,
                      [](SUBTITLES& titles) {
                          for (std::int32_t i = 1; i <= titles.Count(); ++i)
                              titles.SetTimes(i, titles.StartTime(i) + 1, titles.EndTime(i) + 1);
                      }),
              file("2s", second + third));
    EXPECT_EQ(Changed(whole, [](SUBTITLES& titles) { titles.SetTimes(2, 3.5, 4); }),
              file("1s", "<p begin=\"1.5s\" dur=\"0.5s\">B</p>" + third));
    EXPECT_EQ(Changed(whole, [](SUBTITLES& titles) { titles.Delete(2); }),
              file("1s", "<p begin=\"00:00:02.000\" dur=\"1s\">C</p>"));
    EXPECT_EQ(Changed(whole, [](SUBTITLES& titles) { titles.Insert(2, 2.25, 2.5, "x"); }),
              file("1s", "<p begin=\"00:00:00.250\" end=\"00:00:00.500\">x</p>"
                         "<p begin=\"0.5s\" dur=\"1s\">B</p>" +
                             third));
    EXPECT_EQ(Changed(whole, [](SUBTITLES& titles) { titles.Text(3, "D"); }),
              file("1s", second + "<p dur=\"1s\">D</p>"));
}

TEST(TimedTextWrite, PutsGroupsThatFollowOneAnotherBesideEachOther) {
    const std::string groups =
        File("<div timeContainer=\"seq\"><div><p begin=\"1s\" end=\"2s\">A</p>"
             "</div><div><p begin=\"1s\" end=\"2s\">B</p></div></div>");
    EXPECT_EQ(Changed(groups, [](SUBTITLES&) {}), groups);
    const std::string moved =
        Changed(groups, [](SUBTITLES& titles) { titles.SetTimes(1, 1, 2.5); });
    EXPECT_EQ(LoadText("x.ttml", moved).Titles(), (Titles{{1, 2.5, "A"}, {3, 4, "B"}}));
}

TEST(TimedTextWrite, BeginsANewFile) {
    const Titles titles{{1, 2.5, " a  b\r\n<i>c</i> & <d>"}, {3600, 3601, ""}};
    const std::string file = SavedText("x.ttml", titles);
    EXPECT_NE(file.find("<p begin=\"00:00:01.000\" end=\"00:00:02.500\"> a  b<br/>"
                        "<span tts:fontStyle=\"italic\">c</span> &amp; &lt;d&gt;</p>"),
              std::string::npos)
        << file;
    EXPECT_EQ(LoadText("x.ttml", file).Titles(), titles);
}

} // namespace
