#include "cli/commandline.h"

#include "cli/arguments.h"
#include "formattesting.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <sstream>

#ifndef _WIN32
#include <sys/wait.h>
#endif

namespace {

constexpr const char* SubRip = "1\r\n00:00:10,000 --> 00:00:12,000\r\nlt /is\r\n\r\n"
                               "2\r\n00:01:50,000 --> 00:01:52,000\r\nB\r\n\r\n";

struct Ran {
    int code;
    std::string out;
    std::string err;
};

/// Runs in a folder with some files. Words with a point are names there, unless
/// they are options or numbers.
class CommandLine : public testing::Test {
  public:
    CommandLine() {
        PutFile(Folder / "IN.srt", SubRip);
        PutFile(Folder / "IN.sub", "{25}{50}A\r\n{75}{100}B\r\n");
        PutFile(Folder / "IN.txt", "nothing known\r\n");
        PutFile(Folder / "EMPTY.txt", "\r\n");
        PutFile(Folder / "CORRUPT.srt", std::string(SubRip) + "x\r\n" + SubRip);
    }

    Ran Run(const std::vector<std::string>& words) const {
        std::vector<std::string> full;
        for (const std::string& word : words)
            full.push_back(word.find('.') != std::string::npos && !word.starts_with('-') &&
                                   word.find_first_of(":0123456789") == std::string::npos
                               ? (Folder / word).string()
                               : word);
        std::ostringstream out;
        std::ostringstream err;
        const ExitCode code = RunCommandLine(full, out, err);
        return {static_cast<int>(code), out.str(), err.str()};
    }

    std::vector<TestTitle> Result(const std::string& name) const {
        SUBTITLES titles;
        FileStyle style;
        LoadTitles(Folder / name, "", titles, style, {});
        return TitlesOf(titles);
    }

    const TestFolder Folder;
};

using Titles = std::vector<TestTitle>;

TEST_F(CommandLine, ConvertsFromFormatToFormat) {
    const Ran ran = Run({"convert", "IN.srt", "OUT.sub"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out + ran.err, "");
    EXPECT_EQ(FileText(Folder / "OUT.sub"), "{250}{300}lt /is\r\n{2750}{2800}B\r\n");
}

TEST_F(CommandLine, TakesTheFrameRate) {
    EXPECT_EQ(Run({"convert", "--frame-rate", "12.5", "IN.sub", "OUT.srt"}).code, 0);
    EXPECT_EQ(Result("OUT.srt"), (Titles{{2, 4, "A"}, {6, 8, "B"}}));
    EXPECT_EQ(Run({"convert", "IN.srt", "OUT.sub", "--frame-rate=10"}).code, 0);
    EXPECT_EQ(FileText(Folder / "OUT.sub").substr(0, 10), "{100}{120}");
    EXPECT_EQ(Run({"convert", "IN.sub", "OUT.srt"}).code, 0);
    EXPECT_EQ(Result("OUT.srt"), (Titles{{1, 2, "A"}, {3, 4, "B"}}));
}

TEST_F(CommandLine, TakesTheCodePage) {
    PutFile(Folder / "IN.sub", "{25}{50}\xEB\r\n");
    EXPECT_EQ(Run({"convert", "--code-page", "KOI8-R", "IN.sub", "OUT.sub"}).code, 0);
    EXPECT_EQ(FileText(Folder / "OUT.sub"), "{25}{50}\xEB\r\n");
}

TEST_F(CommandLine, WritesNothingOfACorruptFileUnlessAskedTo) {
    PutFile(Folder / "OUT.srt", "old");
    Ran ran = Run({"convert", "CORRUPT.srt", "OUT.srt"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.err.find("File is corrupt or not in SubRip format."), std::string::npos);
    EXPECT_EQ(FileText(Folder / "OUT.srt"), "old");

    ran = Run({"convert", "--partial", "CORRUPT.srt", "OUT.srt"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.err.find("File is corrupt or not in SubRip format."), std::string::npos);
    EXPECT_EQ(FileText(Folder / "OUT.srt"), SubRip);
}

struct FailRow {
    std::vector<std::string> words;
    const char* message;
};

class Failing : public CommandLine, public testing::WithParamInterface<FailRow> {};

TEST_P(Failing, SaysWhyAndWritesNothing) {
    const Ran ran = Run(GetParam().words);
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_NE(ran.err.find(GetParam().message), std::string::npos) << ran.err;
    EXPECT_FALSE(std::filesystem::exists(Folder / GetParam().words.back()));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Failing,
    testing::Values(FailRow{{"convert", "MISSING.srt", "OUT.srt"}, "MISSING.srt: cannot be opened"},
                    FailRow{{"convert", "IN.txt", "OUT.srt"}, "Could not determine file format"},
                    FailRow{{"convert", "--partial", "IN.txt", "OUT.srt"},
                            "Could not determine file format"},
                    FailRow{{"convert", "EMPTY.txt", "OUT.srt"}, "Could not determine file format"},
                    FailRow{{"convert", "IN.srt", "NONE/OUT.srt"},
                            "One or more errors occurred while saving.\nThe file may be invalid."},
                    FailRow{{"shift", "--by", "-10.001", "IN.srt", "OUT.srt"},
                            "Cannot save: all starting times must be positive."},
                    FailRow{{"shift", "--by", "117964799", "IN.srt", "OUT.srt"},
                            "One or more errors occurred"}));

TEST_F(CommandLine, StretchOfTitlesThatStartTogetherIsARunTimeError) {
    PutFile(Folder / "ONE.sub", "{25}{50}A\r\n");
    const Ran ran = Run({"stretch", "--first", "1", "--last", "2", "ONE.sub", "OUT.sub"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.err.find("Division by zero"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Folder / "OUT.sub"));
}

class Wrong : public CommandLine, public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(Wrong, ArgumentsEndWithTwo) {
    const Ran ran = Run(GetParam());
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.out, "");
    EXPECT_NE(ran.err.find("quelmar-cli --help"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Folder / "OUT.srt"));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Wrong,
    testing::Values(
        std::vector<std::string>{}, std::vector<std::string>{"transform", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"convert"}, std::vector<std::string>{"convert", "IN.srt"},
        std::vector<std::string>{"convert", "IN.srt", "OUT.srt", "OUT.srt"},
        std::vector<std::string>{"convert", "--fast", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"convert", "--partial=yes", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"convert", "--frame-rate", "0", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"convert", "--code-page", "nonsense", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"convert", "--frame-rate", "x", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"convert", "IN.srt", "OUT.srt", "--frame-rate"},
        std::vector<std::string>{"shift", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"shift", "--by", "soon", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"shift", "--by", "25.5.", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"shift", "--by", "5..5", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"shift", "--by", "1e-400", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"convert", "--frame-rate", "25.5.", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"convert", "--frame-rate", "1e400", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"shift", "--by", "99999999999", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"stretch", "--first", "9", "--last", "5", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"stretch", "--from-rate", "1e-300", "--to-rate", "25", "IN.srt",
                                 "OUT.srt"},
        std::vector<std::string>{"stretch", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"stretch", "--first", "1", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"stretch", "--first", "1", "--amount", "2", "IN.srt", "OUT.srt"},
        std::vector<std::string>{"stretch", "--from-rate", "25", "--to-rate", "0", "IN.srt",
                                 "OUT.srt"},
        std::vector<std::string>{"correct", "IN.srt", "OUT.srt"}));

TEST_F(CommandLine, HelpsAndTellsItsVersion) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"--help"}, std::vector<std::string>{"convert", "--help"}}) {
        const Ran ran = Run(words);
        EXPECT_EQ(ran.code, 0);
        EXPECT_EQ(ran.err, "");
        for (const char* word :
             {"convert", "shift --by", "stretch --first", "correct", "--partial"})
            EXPECT_NE(ran.out.find(word), std::string::npos) << word;
    }
    EXPECT_EQ(Run({"--version"}).out.substr(0, 12), "quelmar-cli ");
}

TEST_F(CommandLine, TakesWhatFollowsTwoDashesForFiles) {
    PutFile("--help.sub", "{25}{50}A\r\n");
    EXPECT_EQ(Run({"convert", "--", "--help.sub", "OUT.srt"}).code, 0);
    std::filesystem::remove("--help.sub");
    EXPECT_EQ(Result("OUT.srt").size(), 1U);
}

TEST_F(CommandLine, ShiftsAllTitles) {
    EXPECT_EQ(Run({"shift", "--by", "-00:00:10,000", "IN.srt", "OUT.srt"}).code, 0);
    EXPECT_EQ(Result("OUT.srt"), (Titles{{0, 2, "lt /is"}, {100, 102, "B"}}));
    EXPECT_EQ(Run({"shift", "--by=0.5", "IN.srt", "OUT.srt"}).code, 0);
    EXPECT_EQ(Result("OUT.srt").front().start, 10.5);
}

TEST_F(CommandLine, StretchesAllTitlesInThreeWays) {
    EXPECT_EQ(
        Run({"stretch", "--first", "00:00:12,000", "--last", "122", "IN.srt", "OUT.srt"}).code, 0);
    EXPECT_EQ(Result("OUT.srt"), (Titles{{12, 14.2, "lt /is"}, {122, 124.2, "B"}}));
    EXPECT_EQ(Run({"stretch", "--amount", "-11", "IN.srt", "OUT.srt"}).code, 0);
    EXPECT_EQ(Result("OUT.srt"), (Titles{{9, 10.8, "lt /is"}, {99, 100.8, "B"}}));
    EXPECT_EQ(Run({"stretch", "--from-rate", "25", "--to-rate", "20", "IN.srt", "OUT.srt"}).code,
              0);
    EXPECT_EQ(Result("OUT.srt"), (Titles{{12.5, 15, "lt /is"}, {137.5, 140, "B"}}));
}

TEST_F(CommandLine, CorrectsAllTexts) {
    EXPECT_EQ(Run({"correct", "--spelling", "--italics", "IN.srt", "OUT.smi"}).code, 0);
    const Titles titles = Result("OUT.smi");
    ASSERT_EQ(titles.size(), 2U);
    EXPECT_EQ(titles[0].text.substr(0, 2), "It");
    EXPECT_NE(titles[0].text.find("<i>"), std::string::npos);
}

TEST_F(CommandLine, AnEmptyListStaysEmpty) {
    PutFile(Folder / "NO.sub", "");
    EXPECT_EQ(Run({"stretch", "--first", "1", "--last", "2", "NO.sub", "OUT.srt"}).code, 0);
    EXPECT_EQ(FileText(Folder / "OUT.srt"), "");
}

TEST_F(CommandLine, WritesNothingUnderANameThatTellsNoFormat) {
    const Ran ran = Run({"convert", "IN.srt", "OUT.doc"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.err.find("“OUT.doc” does not tell the format."), std::string::npos) << ran.err;
    EXPECT_FALSE(std::filesystem::exists(Folder / "OUT.doc"));
}

TEST_F(CommandLine, LeavesAFileThatItCannotReplaceAsItWas) {
    create_hard_link(Folder / "IN.srt", Folder / "OTHER.srt");
    PutFile(Folder / "state", "in the way");
    setenv("XDG_STATE_HOME", (Folder / "state").c_str(), 1);
    const Ran ran = Run({"shift", "--by", "1", "IN.srt", "IN.srt"});
    unsetenv("XDG_STATE_HOME");
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.err.find("“IN.srt” was not touched"), std::string::npos) << ran.err;
    EXPECT_EQ(FileText(Folder / "IN.srt"), SubRip);
}

TEST_F(CommandLine, WritesStylesIntoSubRipWhenAskedTo) {
    PutFile(Folder / "IN.smi", "<BODY>\r\n<SYNC Start=1000><P>x<i>y</i>\r\n</BODY>\r\n");
    EXPECT_EQ(Run({"convert", "IN.smi", "OUT.srt"}).code, 0);
    EXPECT_EQ(FileText(Folder / "OUT.srt").find("<i>"), std::string::npos);
    EXPECT_EQ(Run({"convert", "--styles", "IN.smi", "OUT.srt"}).code, 0);
    EXPECT_NE(FileText(Folder / "OUT.srt").find("<i> y </i>"), std::string::npos);
}

TEST_F(CommandLine, WorksInPlace) {
    EXPECT_EQ(Run({"shift", "--by", "1", "IN.srt", "IN.srt"}).code, 0);
    EXPECT_EQ(Result("IN.srt").front().start, 11);
}

struct RepairRow {
    const char* name;
    std::string_view file;
    /// What the error without --repair tells of the tolerant reading.
    const char* finds;
    Titles mended;
    const char* said;
};

class Repair : public CommandLine, public testing::WithParamInterface<RepairRow> {};

TEST_P(Repair, IsDoneWhenAskedForAlone) {
    const RepairRow& row = GetParam();
    PutFile(Folder / row.name, row.file);
    const Ran strictly = Run({"convert", row.name, "OUT.srt"});
    EXPECT_EQ(strictly.code, 1);
    EXPECT_NE(strictly.err.find("A tolerant reading finds " + std::string(row.finds)),
              std::string::npos)
        << strictly.err;
    EXPECT_NE(strictly.err.find("--repair takes it."), std::string::npos) << strictly.err;
    EXPECT_FALSE(std::filesystem::exists(Folder / "OUT.srt"));
    const Ran partly = Run({"convert", "--partial", row.name, "OUT.srt"});
    EXPECT_EQ(partly.code, 1);
    EXPECT_TRUE(std::filesystem::exists(Folder / "OUT.srt")) << partly.err;
    const Ran mended = Run({"convert", "--repair", row.name, "OUT.srt"});
    EXPECT_EQ(mended.code, 0) << mended.err;
    EXPECT_NE(mended.err.find(row.said), std::string::npos) << mended.err;
    EXPECT_EQ(Result("OUT.srt"), row.mended);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Repair,
    testing::Values(
        RepairRow{"two-lines.srt",
                  "1\n00:00:01,000 --> 00:00:02,000\nA\n\n\n2\n00:00:03,000 --> 00:00:04,000\nB\n",
                  "2 titles instead of 1: 1 blank line between blocks (line 5)",
                  {{1, 2, "A"}, {3, 4, "B"}},
                  "mended: 1 blank line between blocks (line 5)"},
        RepairRow{"swallowed.srt",
                  "1\n00:00:01,000 --> 00:00:02,000\nA\n \n2\n00:00:03,000 --> 00:00:04,000\nB\n",
                  "2 titles instead of 1: ",
                  {{1, 2, "A"}, {3, 4, "B"}},
                  "mended: "},
        RepairRow{"short.srt",
                  "1\n0:00:01.0 --> 0:00:02.0\nA\n",
                  "other times for 1 of 1 title: 1 line of times in another form (line 2)",
                  {{1, 2, "A"}},
                  "mended: 1 line of times in another form (line 2)"},
        RepairRow{"rate.sub",
                  "{1}{1}50\r\n{50}{100}A\r\n",
                  "1 title instead of 2: 1 line that names the frame rate (line 1)",
                  {{1, 2, "A"}},
                  "mended: 1 line that names the frame rate (line 1)"},
        RepairRow{"zero.sub",
                  "{0}{1}50 fps\r\n{50}{100}A\r\n",
                  "1 title instead of 2: 1 line that names the frame rate (line 1)",
                  {{1, 2, "A"}},
                  "mended: 1 line that names the frame rate (line 1)"},
        RepairRow{"body.smi",
                  "<SAMI><BODY bgcolor=black>\r\n<SYNC Start=1000><P Class=EN>A\r\n"
                  "<SYNC Start=2000><P Class=EN>&nbsp;\r\n</BODY>\r\n",
                  "1 title instead of ",
                  {{1, 2, "A"}},
                  "mended: 1 BODY tag with attributes (line 1), 1 entity (line 3)"}));

TEST_F(CommandLine, RepairLeavesARightFileAsItIs) {
    for (const char* option : {"--repair", "--partial", "--styles"}) {
        const Ran ran = Run({"convert", option, "IN.srt", "OUT.srt"});
        EXPECT_EQ(ran.code, 0);
        EXPECT_EQ(ran.err, "");
        EXPECT_EQ(FileText(Folder / "OUT.srt"), SubRip);
    }
}

struct FrameRateRow {
    const char* file;
    int code;
    Titles titles;
};

class GivenFrameRate : public CommandLine, public testing::WithParamInterface<FrameRateRow> {};

TEST_P(GivenFrameRate, StandsForTheOneThatTheFileNamesAndForNoOtherRepair) {
    PutFile(Folder / "IN.sub", GetParam().file);
    const Ran ran = Run({"convert", "--frame-rate", "10", "IN.sub", "OUT.srt"});
    EXPECT_EQ(ran.code, GetParam().code) << ran.err;
    EXPECT_NE(ran.err.find("--repair takes it."), std::string::npos) << ran.err;
    EXPECT_EQ(Result("OUT.srt"), GetParam().titles);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, GivenFrameRate,
    testing::Values(FrameRateRow{"{1}{1}50\r\n{50}{100}A\r\n", 0, {{0.1, 0.1, "50"}, {5, 10, "A"}}},
                    FrameRateRow{"{1}{1}50\r\n{50}{}A\r\n{100}{110}B\r\n", 1, {}}));

TEST_F(CommandLine, RepairTakesTheLanguageThatIsGiven) {
    PutFile(Folder / "two.smi",
            "<STYLE><!-- .EN {Name: English;} --></STYLE><BODY>\r\n"
            "<SYNC Start=1000><P Class=EN>A<P Class=FR>B\r\n"
            "<SYNC Start=2000><P Class=EN>&nbsp;<P Class=FR>&nbsp;\r\n</BODY>\r\n");
    for (const auto& [language, text] : {std::pair{"", "A"}, std::pair{"english", "A"},
                                         std::pair{"en", "A"}, std::pair{"FR", "B"}}) {
        const Ran ran = Run({"convert", "--repair", "--language", language, "two.smi", "OUT.srt"});
        EXPECT_EQ(ran.code, 0) << ran.err;
        EXPECT_NE(ran.err.find("languages: English, FR"), std::string::npos) << ran.err;
        EXPECT_EQ(Result("OUT.srt"), (Titles{{1, 2, text}})) << language;
    }
    std::filesystem::remove(Folder / "OUT.srt");
    const Ran ran = Run({"convert", "--repair", "--language", "de", "two.smi", "OUT.srt"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.err.find("has no such language, but English, FR"), std::string::npos) << ran.err;
    EXPECT_FALSE(std::filesystem::exists(Folder / "OUT.srt"));
}

TEST_F(CommandLine, RepairTakesTheFrameRateThatIsGiven) {
    PutFile(Folder / "rate.sub", "{1}{1}50\r\n{50}{100}A\r\n");
    EXPECT_EQ(Run({"convert", "--repair", "--frame-rate", "25", "rate.sub", "OUT.srt"}).code, 0);
    EXPECT_EQ(Result("OUT.srt"), (Titles{{2, 4, "A"}}));
}

TEST(TimeArguments, AreTimesOrSeconds) {
    for (const auto& [text, seconds] :
         {std::pair{"00:00:01,500", 1.5}, std::pair{"-01:00:00.250", -3600.25},
          std::pair{"+100:00:00,000", 360000.0}, std::pair{"12", 12.0}, std::pair{"-0.5", -0.5}})
        EXPECT_EQ(TimeOf(text), seconds) << text;
    for (const char* text : {"", "x", "00:00:01", "00:00:01,5", "0:00:01,500", "00:00:0x,500",
                             "--00:00:01,500", "1,5", "nan", "inf"})
        EXPECT_EQ(TimeOf(text), std::nullopt) << text;
}

#ifndef _WIN32
TEST_F(CommandLine, IsWhatTheBuiltProgramRuns) {
    const auto run = [this](const std::string& words) {
        const std::string command =
            "cd '" + Folder.Path().string() + "' && " QUELMAR_CLI " " + words + " >out 2>err";
        return WEXITSTATUS(std::system(command.c_str()));
    };
    EXPECT_EQ(run("convert IN.srt OUT.sub"), 0);
    EXPECT_EQ(Result("OUT.sub").size(), 2U);
    EXPECT_EQ(run("convert CORRUPT.srt OUT.srt"), 1);
    EXPECT_NE(FileText(Folder / "err").find("CORRUPT.srt: File is corrupt"), std::string::npos);
    EXPECT_EQ(run(""), 2);
    EXPECT_EQ(run("--version"), 0);
    EXPECT_EQ(FileText(Folder / "out").substr(0, 12), "quelmar-cli ");
}
#endif

} // namespace
