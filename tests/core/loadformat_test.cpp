#include "formattesting.h"

#include "base/runtimeerror.h"
#include "formats/sami.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* SubRip = "1\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\n\r\n";
constexpr const char* MicroDvd = "{1}{25}A\r\n";
constexpr const char* Sami = "<SAMI>\r\n<BODY>\r\n<SYNC Start=1000>A\r\n</BODY>\r\n";

struct Row {
    const char* name;
    std::string_view file;
    const char* format;
};

class Detection : public testing::TestWithParam<Row> {};

TEST_P(Detection, FindsTheFormat) {
    const Loaded loaded = LoadText(GetParam().name, GetParam().file);
    ASSERT_NE(loaded.result.format, nullptr);
    EXPECT_STREQ(loaded.result.format->name, GetParam().format);
    EXPECT_EQ(loaded.titles.Count(), 1);
    EXPECT_TRUE(loaded.titles.UndoEnabled());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Detection,
    testing::Values(Row{"movie.SRT", SubRip, "SubRip"}, Row{"movie.Smi", Sami, "SAMI"},
                    Row{"movie.sub", MicroDvd, "MicroDVD"}, Row{"movie.txt", SubRip, "SubRip"},
                    Row{"movie", MicroDvd, "MicroDVD"}, Row{"movie.txt", Sami, "SAMI"},
                    Row{"movie.srt ", SubRip, "SubRip"}, Row{"  .srt", SubRip, "SubRip"},
                    Row{"movie.txt", "\xEF\xBB\xBF{1}{25}A\r\n", "MicroDVD"},
                    Row{"\xD0\xBA\xD0\xB8\xD0\xBD\xD0\xBE.srt", SubRip, "SubRip"}));

TEST(Detection, ReadsWhatItSkippedWhenItReadsTheFormat) {
    // The empty lines that detection passes over are corrupt for SubRip and nothing to MicroDVD.
    EXPECT_EQ(LoadText("x.txt", std::string("\r\n") + SubRip).result.outcome, LoadOutcome::Corrupt);
    EXPECT_EQ(LoadText("x.txt", std::string("\r\n") + MicroDvd).titles.Count(), 1);
}

struct PictureRow {
    const char* name;
    std::string_view file;
    const char* kind;
};

class Pictures : public testing::TestWithParam<PictureRow> {};

TEST_P(Pictures, AreSaidToBeNoText) {
    int asked = 0;
    LoadHooks hooks;
    hooks.askFrameRate = [&asked](std::optional<double>) {
        ++asked;
        return 25;
    };
    const Loaded loaded = LoadText(GetParam().name, GetParam().file, hooks);
    EXPECT_EQ(loaded.result.outcome, LoadOutcome::UnknownFormat);
    EXPECT_EQ(loaded.result.message,
              std::string("Could not determine file format.\r\nThe file holds its titles as "
                          "pictures (") +
                  GetParam().kind + "), not as text.");
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(loaded.titles.UndoEnabled());
}

using namespace std::string_view_literals;

INSTANTIATE_TEST_SUITE_P(
    Rows, Pictures,
    testing::Values(PictureRow{"x.sub", "\0\0\x01\xBA\x44\0\x04"sv, "VobSub"},
                    PictureRow{"x.idx", "# VobSub index file, v7\r\n"sv, "VobSub"},
                    PictureRow{"x.sup", "PG\0\0\x10\x20\0\0\0\0\x16\0\x13"sv, "PGS"},
                    PictureRow{"x.sup", "SP\x10\x20\0\0\0\0\0\0\x01"sv, "DVD"}));

class Unknown : public testing::TestWithParam<const char*> {};

TEST_P(Unknown, IsSaid) {
    const Loaded loaded = LoadText("x.txt", GetParam());
    EXPECT_EQ(loaded.result.outcome, LoadOutcome::UnknownFormat);
    EXPECT_EQ(loaded.result.message, "Could not determine file format");
    EXPECT_EQ(loaded.result.format, nullptr);
    EXPECT_EQ(loaded.titles.Count(), 0);
    EXPECT_TRUE(loaded.titles.UndoEnabled());
}

INSTANTIATE_TEST_SUITE_P(Rows, Unknown,
                         testing::Values("0\r\n", "-1\r\n", " \r\n1\r\n", "WEBVTTX\r\n", "[a]",
                                         "[1]", "[00]", "0:00:01.000", "[script", " {1}{25}A\r\n",
                                         "\r\n\r\nx"));

TEST(Detection, TakesALeadingNumberAboveZeroForSubRip) {
    for (const char* line : {"1", " 7 x", "0.5", "+3"})
        EXPECT_EQ(FormatByBeginning({line, line}), FormatByName("x.srt")) << line;
}

TEST(Detection, AsksForTheFrameRateOfWhatItRecognised) {
    int asked = 0;
    LoadHooks hooks;
    hooks.askFrameRate = [&asked](std::optional<double>) {
        ++asked;
        return 12.5;
    };
    EXPECT_EQ(LoadText("x.txt", MicroDvd, hooks).titles.EndTime(1), 2);
    LoadText("x.srt", SubRip, hooks);
    EXPECT_EQ(asked, 1);
}

TEST(Names, NeedAllFourCharacters) {
    for (const char* name : {"srt", "", "x.sr", "x.srtx", "x.srt.", "x.s rt", "x.sub/", "xsrt"})
        EXPECT_EQ(FormatByName(name), nullptr) << name;
    EXPECT_STREQ(FormatByName(" C:\\a.smi\\b.SuB  ")->name, "MicroDVD");
}

TEST(FormatTable, IsInTheOrderOfFileDialogs) {
    constexpr std::string_view First = "SAMI files (*.smi)|*.smi|SubRip files (*.srt)|*.srt|"
                                       "MicroDVD Subtitle files (*.sub)|*.sub";
    EXPECT_EQ(FormatFilter().substr(0, First.size()), First);
}

TEST(Load, OfWhatCannotBeOpenedDoesNothing) {
    const TestFolder folder;
    std::filesystem::create_directory(folder / "folder.srt");
    for (const char* name : {"missing.srt", "folder.srt", "missing/x.srt"}) {
        SUBTITLES titles = ListOf({{1, 2, "A"}});
        titles.UndoEnabled(true);
        FileStyle style;
        style.byteOrderMark = true;
        style.format = "SAMI";
        style.kept = "x";
        const LoadResult result = LoadTitles(folder / name, "", titles, style, {});
        EXPECT_EQ(result.outcome, LoadOutcome::NotOpened) << name;
        EXPECT_EQ(result.message, "") << name;
        EXPECT_EQ(titles.Count(), 1) << name;
        EXPECT_EQ(style.kept, "x") << name;
    }
}

struct UselessRow {
    const char* name;
    const char* text;
    LoadOutcome outcome;
    const char* message;
};

class Useless : public testing::TestWithParam<UselessRow> {};

TEST_P(Useless, LeavesTheOldTitles) {
    const TestFolder folder;
    PutFile(folder / GetParam().name, GetParam().text);
    SUBTITLES titles = ListOf({{1, 2, "A"}});
    FileStyle style;
    style.kept = "x";
    LoadHooks hooks;
    hooks.replacing = [] {
        FAIL() << "nothing is replaced";
    };
    const LoadResult result = LoadTitles(folder / GetParam().name, "", titles, style, hooks);
    EXPECT_EQ(result.outcome, GetParam().outcome);
    EXPECT_EQ(result.message, GetParam().message);
    EXPECT_EQ(titles.Count(), 1);
    EXPECT_EQ(titles.Text(1), "A");
    EXPECT_EQ(style.kept, "x");
    EXPECT_TRUE(titles.UndoEnabled());
}

constexpr const char* Unknown1 = "Could not determine file format";
constexpr const char* Beyond =
    "The file was not opened: a time of title 1 is beyond what can be shown.";

INSTANTIATE_TEST_SUITE_P(
    Rows, Useless,
    testing::Values(UselessRow{"x.txt", "", LoadOutcome::UnknownFormat, Unknown1},
                    UselessRow{"x.txt", "\r\n\r\n", LoadOutcome::UnknownFormat, Unknown1},
                    UselessRow{"x.txt", "nothing", LoadOutcome::UnknownFormat, Unknown1},
                    UselessRow{"x.srt", "1\n99999:00:00,0 --> 00:00:02,000\nx\n",
                               LoadOutcome::Unusable, Beyond},
                    UselessRow{"x.sub", "{9000000000}{1}x\n", LoadOutcome::Unusable, Beyond}));

#ifndef _WIN32
TEST(Load, DoesNotOpenWhatNeverEnds) {
    SUBTITLES titles;
    FileStyle style;
    EXPECT_EQ(LoadTitles("/dev/zero", "", titles, style, {}).outcome, LoadOutcome::NotOpened);
}
#endif

TEST(Load, StartsANewDocumentWithoutHistoryAndKeptParts) {
    const TestFolder folder;
    PutFile(folder / "x.srt", SubRip);
    SUBTITLES titles;
    titles.UndoEnabled(true);
    titles.Insert(1, 1, 2, "old");
    FileStyle style;
    KeepSami({"a", "b", "c"}, style);
    LoadTitles(folder / "x.srt", "", titles, style, {});
    EXPECT_EQ(titles.UndoCount(), 0);
    EXPECT_EQ(style, FileStyle());
}

TEST(Load, KeepsTheTitlesBeforeAFault) {
    const Loaded loaded = LoadText("x.srt", std::string(SubRip) + SubRip + "x\r\n" + SubRip);
    EXPECT_EQ(loaded.titles.Count(), 2);
    EXPECT_EQ(loaded.result.outcome, LoadOutcome::Corrupt);
    EXPECT_STREQ(loaded.result.format->name, "SubRip");
}

class LongFile : public testing::TestWithParam<const char*> {
  public:
    static std::string Text(const std::string& name) {
        std::vector<TestTitle> titles;
        constexpr int count = 20'000;
        titles.reserve(count);
        for (int i = 0; i < count; ++i)
            titles.push_back({i + 0.0, i + 0.5, "Some words of an ordinary length"});
        return SavedText(name, titles);
    }
};

TEST_P(LongFile, TellsItsProgress) {
    std::vector<double> steps;
    LoadHooks hooks;
    hooks.progress = [&steps](double done) {
        steps.push_back(done);
        return true;
    };
    EXPECT_EQ(LoadText(GetParam(), Text(GetParam()), hooks).titles.Count(), 20'000);
    ASSERT_GT(steps.size(), 4U);
    EXPECT_LT(steps.size(), 400U);
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    EXPECT_GT(steps.front(), 0);
    EXPECT_LE(steps.back(), 1);
}

TEST_P(LongFile, CanBeCancelled) {
    LoadHooks hooks;
    hooks.progress = [](double done) {
        return done < 0.5;
    };
    const Loaded loaded = LoadText(GetParam(), Text(GetParam()), hooks);
    EXPECT_EQ(loaded.result.outcome, LoadOutcome::Cancelled);
    EXPECT_EQ(loaded.result.message, "");
    EXPECT_GT(loaded.titles.Count(), 9'000);
    EXPECT_LT(loaded.titles.Count(), 15'000);
    EXPECT_TRUE(loaded.titles.UndoEnabled());
}

INSTANTIATE_TEST_SUITE_P(Formats, LongFile, testing::Values("x.srt", "x.sub", "x.smi"));

} // namespace
