#include "cli/commandline.h"
#include "cli/pairs.h"
#include "cli/syncreport.h"
#include "formattesting.h"
#include "tests/core/fittingfilms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <sstream>

namespace {

constexpr double Length = 400;

/// Runs the command in a folder with titles that are right and some that are not.
class Sync : public testing::Test {
  public:
    Sync() {
        Put("RIGHT.srt", Film.titles);
        Put("LATE.srt", Misplaced(Film.titles, -2.4));
        Put("PAL.sub", Misplaced(Film.titles, 0, 25.0 / 24));
        Put("OTHER.srt", MakeFilm(92, Length).titles);
        PutFile(Folder / "CORRUPT.srt", FileText(Folder / "LATE.srt") + "x\r\n");
    }

    void Put(const std::filesystem::path& name, const std::vector<FitTitle>& titles) const {
        std::vector<TestTitle> list;
        for (const FitTitle& title : titles)
            list.push_back({std::max(title.start, 0.0), title.end, title.text});
        std::filesystem::create_directories((Folder / name).parent_path());
        PutFile(Folder / name, SavedText(name.filename().string(), list));
    }

    /// The words with a dot that are no options are names in the folder.
    int Run(std::vector<std::string> words) {
        for (std::string& word : words) {
            if (word.find('.') != std::string::npos && !word.starts_with('-'))
                word = (Folder / word).string();
        }
        words.insert(words.begin(), "sync");
        std::ostringstream out;
        std::ostringstream err;
        const ExitCode code = RunCommandLine(words, out, err);
        Out = out.str();
        Err = err.str();
        return static_cast<int>(code);
    }

    /// How far the titles of a file are from right, in seconds.
    double Error(const std::filesystem::path& name) const {
        SUBTITLES titles;
        FileStyle style;
        LoadHooks hooks;
        hooks.askFrameRate = [](std::optional<double>) {
            return 25.0;
        };
        LoadTitles(Folder / name, "", titles, style, hooks);
        if (titles.Count() != static_cast<std::int32_t>(Film.titles.size()))
            return 1e9;
        double worst = 0;
        for (std::int32_t i = 1; i <= titles.Count(); ++i)
            worst = std::max(worst, std::abs(titles.StartTime(i) -
                                             Film.titles[static_cast<std::size_t>(i - 1)].start));
        return worst;
    }

    bool Exists(const std::string& name) const { return std::filesystem::exists(Folder / name); }

    const FittingFilm Film = MakeFilm(91, Length);
    const TestFolder Folder;
    std::string Out;
    std::string Err;
};

TEST_F(Sync, FitsToRightTitles) {
    EXPECT_EQ(Run({"RIGHT.srt", "LATE.srt", "OUT.srt"}), 0);
    EXPECT_LT(Error("OUT.srt"), 0.02);
    EXPECT_NE(Out.find("fitted: -2.4"), std::string::npos) << Out;
    EXPECT_EQ(Err, "");
}

TEST_F(Sync, WritesRightTitlesAsTheyAre) {
    EXPECT_EQ(Run({"--by", "titles", "RIGHT.srt", "RIGHT.srt", "OUT.srt"}), 0);
    EXPECT_EQ(FileText(Folder / "OUT.srt"), FileText(Folder / "RIGHT.srt"));
    EXPECT_NE(Out.find("right, sure"), std::string::npos) << Out;
}

TEST_F(Sync, TakesTheFrameRate) {
    EXPECT_EQ(Run({"--frame-rate", "25", "RIGHT.srt", "PAL.sub", "OUT.srt"}), 0);
    EXPECT_LT(Error("OUT.srt"), 0.06);
}

TEST_F(Sync, WritesNothingWithoutATrustworthyAnswer) {
    EXPECT_EQ(Run({"--report", "REPORT.json", "RIGHT.srt", "OTHER.srt", "OUT.srt"}), 3);
    EXPECT_FALSE(Exists("OUT.srt"));
    EXPECT_NE(Err.find("nothing is written"), std::string::npos);
    EXPECT_NE(FileText(Folder / "REPORT.json").find(R"("verdict": "unsure")"), std::string::npos);
}

TEST_F(Sync, Reports) {
    EXPECT_EQ(Run({"--report", "REPORT.json", "RIGHT.srt", "LATE.srt", "OUT.srt"}), 0);
    const std::string report = FileText(Folder / "REPORT.json");
    for (const char* part : {R"({"verdict": "fitted", "confidence": )", R"("by": "titles")",
                             R"({"first": 1, "last": )", R"("offset": -2.4)", R"("rate": 1,)",
                             R"("withoutPlace": [])", R"("seconds": {"decode": 0, "speech": 0)"})
        EXPECT_NE(report.find(part), std::string::npos) << part << " in " << report;
}

TEST_F(Sync, TakesADamagedFileOnlyWhenAskedTo) {
    EXPECT_EQ(Run({"RIGHT.srt", "CORRUPT.srt", "OUT.srt"}), 1);
    EXPECT_FALSE(Exists("OUT.srt"));
    EXPECT_EQ(Run({"--partial", "RIGHT.srt", "CORRUPT.srt", "OUT.srt"}), 1);
    EXPECT_LT(Error("OUT.srt"), 0.02);
}

TEST_F(Sync, TakesAWildFileOnlyWhenAskedTo) {
    std::string wild = FileText(Folder / "LATE.srt");
    for (std::size_t at = 0; (at = wild.find("\r\n\r\n", at)) != std::string::npos; at += 7)
        wild.replace(at, 4, "\r\n \r\n");
    PutFile(Folder / "WILD.srt", wild);
    EXPECT_EQ(Run({"RIGHT.srt", "WILD.srt", "OUT.srt"}), 1);
    EXPECT_NE(Err.find("WILD.srt: "), std::string::npos) << Err;
    EXPECT_NE(Err.find("--repair takes it."), std::string::npos) << Err;
    EXPECT_FALSE(Exists("OUT.srt"));
    EXPECT_EQ(Run({"WILD.srt", "RIGHT.srt", "OUT.srt"}), 1);
    EXPECT_FALSE(Exists("OUT.srt"));
    EXPECT_EQ(Run({"--repair", "RIGHT.srt", "WILD.srt", "OUT.srt"}), 0) << Err;
    EXPECT_NE(Err.find("mended: "), std::string::npos) << Err;
    EXPECT_LT(Error("OUT.srt"), 0.02);
}

TEST_F(Sync, TakesTheFrameRateThatAFileNames) {
    PutFile(Folder / "RATE.sub", "{1}{1}25\r\n" + FileText(Folder / "PAL.sub"));
    EXPECT_EQ(Run({"RIGHT.srt", "RATE.sub", "OUT.srt"}), 1);
    EXPECT_NE(Err.find("names the frame rate"), std::string::npos) << Err;
    EXPECT_FALSE(Exists("OUT.srt"));
    EXPECT_EQ(Run({"--repair", "RIGHT.srt", "RATE.sub", "OUT.srt"}), 0) << Err;
    EXPECT_LT(Error("OUT.srt"), 0.06);
}

struct FailRow {
    std::vector<std::string> words;
    const char* message;
};

class SyncFailing : public Sync, public testing::WithParamInterface<FailRow> {};

TEST_P(SyncFailing, SaysWhyAndWritesNothing) {
    EXPECT_EQ(Run(GetParam().words), 1);
    EXPECT_NE(Err.find(GetParam().message), std::string::npos) << Err;
    EXPECT_FALSE(Exists("OUT.srt"));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SyncFailing,
    testing::Values(FailRow{{"NONE.srt", "LATE.srt", "OUT.srt"}, "NONE.srt: cannot be opened"},
                    FailRow{{"RIGHT.srt", "NONE.srt", "OUT.srt"}, "NONE.srt: cannot be opened"},
                    FailRow{{"--by", "sound", "RIGHT.srt", "LATE.srt", "OUT.srt"}, "has no sound"},
                    FailRow{{"--report", "NONE/R.json", "RIGHT.srt", "LATE.srt", "OUT.srt"},
                            "R.json: cannot be written"},
                    FailRow{{"--library", "NONE.folder"}, "is no folder"}));

class SyncWrong : public Sync, public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(SyncWrong, ArgumentsEndWithTwo) {
    EXPECT_EQ(Run(GetParam()), 2);
    EXPECT_NE(Err.find("quelmar-cli --help"), std::string::npos);
    EXPECT_FALSE(Exists("OUT.srt"));
}

using Words = std::vector<std::string>;

INSTANTIATE_TEST_SUITE_P(
    Rows, SyncWrong,
    testing::Values(Words{}, Words{"RIGHT.srt", "LATE.srt"},
                    Words{"RIGHT.srt", "LATE.srt", "OUT.srt", "MORE.srt"},
                    Words{"--by", "ear", "RIGHT.srt", "LATE.srt", "OUT.srt"},
                    Words{"--track", "0", "RIGHT.srt", "LATE.srt", "OUT.srt"},
                    Words{"--track", "one", "RIGHT.srt", "LATE.srt", "OUT.srt"},
                    Words{"--frame-rate", "0", "RIGHT.srt", "LATE.srt", "OUT.srt"},
                    Words{"--jobs", "2", "RIGHT.srt", "LATE.srt", "OUT.srt"},
                    Words{"--dry-run", "RIGHT.srt", "LATE.srt", "OUT.srt"},
                    Words{"--fast", "RIGHT.srt", "LATE.srt", "OUT.srt"},
                    Words{"--library", ".", "RIGHT.srt"}, Words{"--library", ".", "--jobs", "0"},
                    Words{"--library", ".", "--report", "R.json"}));

TEST_F(Sync, IsInTheHelp) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(RunCommandLine(std::vector<std::string>{"--help"}, out, err), ExitCode::Done);
    for (const char* part : {"sync REFERENCE IN OUT", "--library FOLDER", "--report FILE"})
        EXPECT_NE(out.str().find(part), std::string::npos) << part;
}

TEST_F(Sync, PassesOverFilmsThatCannotBeRead) {
    Put("films/A.srt", Film.titles);
    PutFile(Folder / "films/A.mkv", "no film");
    EXPECT_EQ(Run({"--library", "./films"}), 1);
    EXPECT_NE(Out.find("failed"), std::string::npos) << Out;
    EXPECT_NE(Out.find("1 files: 0 fitted, 0 right, 0 unsure, 0 done before, 1 failed"),
              std::string::npos)
        << Out;
}

TEST_F(Sync, PassesOverWhatIsDone) {
    Put("films/A.srt", Film.titles);
    PutFile(Folder / "films/A.mkv", "no film");
    PutFile(Folder / "films/A.fitted.srt", "old");
    EXPECT_EQ(Run({"--library", "./films"}), 0);
    EXPECT_NE(Out.find("1 done before"), std::string::npos) << Out;
    EXPECT_NE(Err.find("] 1 of 1"), std::string::npos) << Err;
    EXPECT_EQ(FileText(Folder / "films/A.fitted.srt"), "old");
}

// Names.

struct NameRow {
    const char* titles;
    const char* film;
    bool belongs;
};

std::ostream& operator<<(std::ostream& out, const NameRow& row) {
    return out << row.titles << " to " << row.film;
}

class Names : public testing::TestWithParam<NameRow> {};

TEST_P(Names, TellWhichFilmIsMeant) {
    EXPECT_EQ(BelongsTo(GetParam().titles, GetParam().film), GetParam().belongs);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Names,
    testing::Values(NameRow{"Film", "Film", true}, NameRow{"film", "FILM", true},
                    NameRow{"Film.en", "Film", true}, NameRow{"Film.eng", "Film", true},
                    NameRow{"Film_en", "Film", true}, NameRow{"Film.pt-BR", "Film", true},
                    NameRow{"Film.zh-Hant", "Film", true}, NameRow{"Film.English", "Film", true},
                    NameRow{"Film.en.forced", "Film", true}, NameRow{"Film.sdh.en", "Film", true},
                    NameRow{"Film.en.2", "Film", true}, NameRow{"Film.2", "Film", false},
                    NameRow{"Film 2", "Film", false}, NameRow{"Films", "Film", false},
                    NameRow{"Film.sequel", "Film", false}, NameRow{"Film.", "Film", false},
                    NameRow{"Film.en.sequel", "Film", false}, NameRow{"Fil", "Film", false},
                    NameRow{"Other", "Film", false}));

TEST(FittedNames, KeepTheExtension) {
    EXPECT_EQ(FittedName("a/Film.en.srt"), "a/Film.en.fitted.srt");
    EXPECT_EQ(FittedName("Film.SUB"), "Film.fitted.SUB");
}

TEST(Pairs, AreFilmsWithTheirTitles) {
    const TestFolder folder;
    std::filesystem::create_directories(folder / "more");
    for (const char* name :
         {"A.mkv", "A.srt", "A.en.srt", "A.fitted.srt", "A.en.cut.mkv", "A.en.cut.de.smi", "B.mp4",
          "C.srt", "notes.txt", "more/A.srt", "more/D.AVI", "more/D.sub"})
        PutFile(folder / name, "x");
    std::string found;
    for (const FilmPair& pair : PairsIn(folder.Path())) {
        found += pair.film.filename().string() + ":";
        for (const std::filesystem::path& titles : pair.titles)
            found += " " + titles.filename().string();
        found += "\n";
    }
    EXPECT_EQ(found, "A.en.cut.mkv: A.en.cut.de.smi\nA.mkv: A.en.srt A.srt\nD.AVI: D.sub\n");
    EXPECT_TRUE(PairsIn(folder / "none").empty());
}

// The report.

TEST(Report, TellsEverything) {
    Fit fit;
    fit.verdict = FitVerdict::Fitted;
    fit.confidence = 0.96999;
    fit.pieces = {{1, 412, -2.41, 25.0 / 24, 0.98}, {413, 500, 7, 1, 0.9}};
    fit.withoutPlace = {3, 4};
    fit.beforeZero = {1};
    EXPECT_EQ(ReportOf(fit, "sound", {6.1, 8.0, 2.2}),
              R"({"verdict": "fitted", "confidence": 0.97, "by": "sound",
 "pieces": [
  {"first": 1, "last": 412, "offset": -2.41, "rate": 1.041666667, "confidence": 0.98},
  {"first": 413, "last": 500, "offset": 7, "rate": 1, "confidence": 0.9}],
 "withoutPlace": [3, 4], "beforeZero": [1],
 "seconds": {"decode": 6.1, "speech": 8, "fit": 2.2}}
)");
    EXPECT_EQ(SummaryOf(fit), "fitted: 2 pieces, the first -2.410 s, rate 1.0417, sure 0.97, "
                              "2 titles without a place");
    EXPECT_EQ(SummaryOf(Fit{}), "unsure, sure 0");
}

} // namespace
