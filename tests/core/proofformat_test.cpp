#include "formats/proof.h"

#include "base/runtimeerror.h"
#include "formattesting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

namespace {

const Format& FormatOf(const char* name) {
    return *FormatByName(name);
}

struct DifferenceRow {
    const char* file;
    std::vector<TestTitle> written;
    std::vector<TestTitle> readBack;
    const char* difference;
};

class Difference : public testing::TestWithParam<DifferenceRow> {};

TEST_P(Difference, NamesTheFirstTitleAndWhatDiffers) {
    const DifferenceRow& row = GetParam();
    EXPECT_EQ(
        FirstDifference(FormatOf(row.file), 25, {}, ListOf(row.written), ListOf(row.readBack)),
        row.difference);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Difference,
    testing::Values(
        DifferenceRow{"x.srt", {}, {}, ""},
        DifferenceRow{"x.srt", {{1, 2, "A"}}, {{1, 2, "A"}}, ""},
        DifferenceRow{"x.srt", {{1, 2, "A"}}, {}, "title 1 is missing"},
        DifferenceRow{"x.srt", {}, {{1, 2, "A"}}, "there is one more title after title 0"},
        DifferenceRow{"x.srt",
                      {{1, 2, "A"}, {3, 4, "B"}},
                      {{1, 2, "A"}, {3.001, 4, "B"}},
                      "title 2 starts at 00:00:03,001 instead of 00:00:03,000"},
        DifferenceRow{"x.srt",
                      {{1, 2, "A"}},
                      {{1, 3, "A"}},
                      "title 1 ends at 00:00:03,000 instead of 00:00:02,000"},
        DifferenceRow{"x.srt", {{1, 2, "A"}}, {{1, 2, "B"}}, "title 1 has other words"},
        DifferenceRow{"x.srt", {{1, 2, "A B"}}, {{1, 2, "AB"}}, "title 1 has other words"},
        DifferenceRow{"x.srt", {{1.0004, 2, "A"}}, {{1, 2, "A"}}, ""},
        DifferenceRow{"x.srt", {{1, 2, " <i>A</i>\r\n\r\n B"}}, {{1, 2, "A\r\nB"}}, ""},
        DifferenceRow{"x.srt", {{1, 2, "<<i>i>A{y:{y}b}"}}, {{1, 2, "A"}}, ""},
        DifferenceRow{"x.srt", {{1, 2, "<I>A"}}, {{1, 2, "A"}}, "title 1 has other words"},
        DifferenceRow{"x.srt", {{1, 2, ""}}, {}, "title 1 is missing"},
        DifferenceRow{"x.sub", {{1.019, 2, "A|B"}}, {{1, 2, "A\r\nB"}}, ""},
        DifferenceRow{"x.sub",
                      {{1.021, 2, "A"}},
                      {{1, 2, "A"}},
                      "title 1 starts at 00:00:01,000 instead of 00:00:01,021"},
        DifferenceRow{"x.smi", {{1, 2, ""}, {3, 4, "A <b>B"}}, {{3, 4, "A<b> B"}}, ""},
        DifferenceRow{"x.smi", {{1, 9, "A"}, {3, 4, "B"}}, {{1, 3, "A"}, {3, 4, "B"}}, ""},
        DifferenceRow{"x.smi", {{1, 9, "A"}, {3, 4, ""}}, {{1, 3, "A"}}, ""},
        DifferenceRow{"x.srt",
                      {{1, 9, "A"}, {3, 4, "B"}},
                      {{1, 3, "A"}, {3, 4, "B"}},
                      "title 1 ends at 00:00:03,000 instead of 00:00:09,000"},
        DifferenceRow{"x.smi", {{1, 2, "a < b"}}, {{1, 2, "a &lt; b"}}, ""},
        DifferenceRow{"x.srt",
                      {{1, 2, "A"}},
                      {{1e12, 2, "A"}},
                      "title 1 starts at an unknown time instead of 00:00:01,000"}));

SaveResult SaveInto(const TestFolder& folder, const char* name,
                    const std::vector<TestTitle>& titles) {
    return SaveTitles(folder / name, "", ListOf(titles), {}, {});
}

struct TextRow {
    std::string text;
    std::string loaded;
};

class SubRipLines : public testing::TestWithParam<TextRow> {};

TEST_P(SubRipLines, ThatAreEmptyAreLeftOut) {
    const TestFolder folder;
    const std::vector<TestTitle> titles{{1, 2, GetParam().text}, {3, 4, "next"}};
    const SaveResult result = SaveInto(folder, "x.srt", titles);
    EXPECT_TRUE(result.proven) << result.message;
    const Loaded loaded = LoadText("x.srt", FileText(folder / "x.srt"));
    EXPECT_EQ(loaded.result.outcome, LoadOutcome::Complete);
    EXPECT_EQ(loaded.Titles(), (std::vector<TestTitle>{{1, 2, GetParam().loaded}, titles[1]}));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SubRipLines,
    testing::Values(TextRow{"Hello\r\n", "Hello"}, TextRow{"\r\nHello", "Hello"},
                    TextRow{"a\r\n\r\n\r\nb", "a\r\nb"}, TextRow{"", ""}, TextRow{"\r\n", ""},
                    TextRow{"\r\n\r\n\r\n", ""}, TextRow{"<i></i>\r\nb", "b"},
                    TextRow{"a\r\n<b></b>\r\nb", "a\r\nb"}, TextRow{"<i>\r\n</i>", ""},
                    TextRow{"a\n\nb\n", "a\r\nb"}, TextRow{"a\r\n \r\nb", "a\r\n \r\nb"}));

TEST(Proof, TellsOfWhatTheFormatCannotHold) {
    const TestFolder folder;
    SaveResult result = SaveInto(folder, "x.srt", {{1, 2, "A"}, {360'000, 360'001, "B"}});
    EXPECT_TRUE(result.written);
    EXPECT_FALSE(result.proven);
    EXPECT_TRUE(result.message.starts_with(
        "“x.srt” was written, but does not give the titles back: title 2 "))
        << result.message;
    result = SaveInto(folder, "x.srt", {{1, 2, "A"}});
    EXPECT_TRUE(result.proven);
    EXPECT_EQ(result.message, "");
}

TEST(Proof, HoldsInEveryEncoding) {
    const TestFolder folder;
    using Encoding = FileStyle::Encoding;
    for (const Encoding encoding : {Encoding::Utf8, Encoding::Utf16LittleEndian,
                                    Encoding::Utf16BigEndian, Encoding::CodePage}) {
        FileStyle style;
        style.encoding = encoding;
        const SaveResult result = SaveTitles(folder / "x.srt", "windows-1252",
                                             ListOf({{1, 2, "caf\xC3\xA9"}}), style, {});
        EXPECT_TRUE(result.proven) << result.message;
    }
}

/// Pieces of files of every format, and what looks like them.
std::string RandomText(std::mt19937& random) {
    static constexpr const char* Pieces[] = {"1",
                                             "2\r\n",
                                             "00:00:01,000 --> 00:00:04,000\r\n",
                                             "Hello",
                                             "\r\n",
                                             "\r\n\r\n",
                                             "\n",
                                             "\r",
                                             " ",
                                             "{y:i}",
                                             "{y:b}",
                                             "{y}",
                                             "{1}{25}",
                                             "{",
                                             "}",
                                             "|",
                                             "||",
                                             "<i>",
                                             "</i>",
                                             "<b>",
                                             "</b>",
                                             "<br>",
                                             "<P>",
                                             "<P Class=X>",
                                             "<SYNC Start=1000>",
                                             "<SYNC Start=5000>",
                                             "<",
                                             ">",
                                             "<a b>",
                                             "&lt;",
                                             "&nbsp;",
                                             "\t",
                                             "\xC3\xA9",
                                             "/",
                                             "\xE2\x80\xA8",
                                             "</body>",
                                             "<body>",
                                             "0",
                                             "-7",
                                             "{75}{100}third"};
    std::string text;
    for (auto left = random() % 40; left > 0; --left)
        text += Pieces[random() % std::size(Pieces)];
    return text;
}

std::string RandomFile(const char* name, std::mt19937& random) {
    std::string file;
    const std::string_view format = FormatOf(name).name;
    if (format == "SAMI")
        file = "<SAMI>\r\n<BODY>\r\n";
    for (auto left = random() % 8; left > 0; --left) {
        const auto start = std::to_string(random() % 10);
        const auto end = std::to_string(random() % 10);
        if (format == "SubRip")
            file += "1\r\n00:00:0" + start + ",5" + end + "0 --> 00:00:0" + end + ",000\r\n";
        else if (format == "MicroDVD")
            file += "{" + start + "}{" + end + "0}";
        else
            file += "<SYNC Start=" + start + "000><P>";
        file += RandomText(random) + "\r\n";
        if (format == "SubRip")
            file += "\r\n";
    }
    return format == "SAMI" ? file + "</BODY>\r\n" : file;
}

constexpr double HundredHours = 359'999;

TEST(Proof, EveryReadersTitlesComeBackThroughEveryWriter) {
    std::mt19937 random(1);
    const char* const wanted = std::getenv("QUELMAR_DOCUMENTS");
    const int documents = wanted == nullptr ? 3000 : std::atoi(wanted);
    for (int i = 0; i < documents; ++i) {
        const char* names[] = {"x.srt", "x.sub", "x.smi"};
        const std::string file = RandomFile(names[i % 3], random);
        SUBTITLES titles;
        FileStyle style;
        FormatOf(names[i % 3]).read(file, 25, titles, style, {});
        // Of what no file can hold, the user is told.
        for (std::int32_t title = titles.Count(); title >= 1; --title)
            if (std::min(titles.StartTime(title), titles.EndTime(title)) < 0 ||
                std::max(titles.StartTime(title), titles.EndTime(title)) >= HundredHours)
                titles.Delete(title);
        for (const char* to : names) {
            std::string written;
            FormatOf(to).write(titles, 25, {}, written);
            SUBTITLES again;
            EXPECT_EQ(FormatOf(to).read(written, 25, again, style, {}), ReadOutcome::Complete);
            ASSERT_EQ(FirstDifference(FormatOf(to), 25, {}, titles, again), "")
                << "document " << i << " to " << to << '\n'
                << testing::PrintToString(TitlesOf(titles)) << '\n'
                << written;
        }
    }
}

} // namespace
