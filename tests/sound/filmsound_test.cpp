#include "cli/commandline.h"

#include "tests/sound/filmmaking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>

namespace {

struct Ran {
    int code;
    std::string out;
    std::string err;
};

class FilmSound : public testing::Test {
  public:
    FilmSound() { setenv("XDG_CACHE_HOME", (Folder / "cache").c_str(), 1); }

    Ran Run(const std::vector<std::string>& words) const {
        std::vector<std::string> full;
        for (const std::string& word : words)
            full.push_back(word.ends_with(".wav") || word.ends_with(".srt") ||
                                   word.ends_with(".avi")
                               ? (Folder / word).string()
                               : word);
        std::ostringstream out;
        std::ostringstream err;
        const ExitCode code = RunCommandLine(full, out, err);
        return {static_cast<int>(code), out.str(), err.str()};
    }

    const TestFolder Folder;
};

using Line = std::array<double, 5>;

std::vector<Line> LinesOf(const std::string& text) {
    std::vector<Line> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        Line numbers{};
        for (double& number : numbers)
            EXPECT_TRUE(words >> number) << line;
        EXPECT_EQ(std::count(line.begin(), line.end(), '\t'), 4) << line;
        lines.push_back(numbers);
    }
    return lines;
}

TEST_F(FilmSound, IsPrintedStepByStep) {
    Ffmpeg(Folder, ClickSound(4) + "a.wav");
    const Ran all = Run({"sound", "a.wav"});
    EXPECT_EQ(all.code, 0);
    EXPECT_EQ(all.err, "");
    const auto lines = LinesOf(all.out);
    ASSERT_EQ(lines.size(), 40U);
    EXPECT_EQ(lines[0], (Line{0, 0, 0, -96, 0}));
    EXPECT_EQ(lines[39][0], 3.9);
    const Ran some = Run({"sound", "--from", "00:00:01,240", "--to=1.26", "--step", "1", "a.wav"});
    const auto fine = LinesOf(some.out);
    ASSERT_EQ(fine.size(), 20U);
    const auto loudest = std::max_element(fine.begin(), fine.end(),
                                          [](const Line& a, const Line& b) { return a[2] < b[2]; });
    EXPECT_EQ((*loudest)[0], 1.25);
    EXPECT_NEAR((*loudest)[2], 0.9, 0.03);
    EXPECT_GT((*loudest)[3], -12);
    EXPECT_EQ(LinesOf(Run({"sound", "--from", "5", "a.wav"}).out).size(), 0U);
    EXPECT_EQ(LinesOf(Run({"sound", "--from", "-5", "--to", "0.2", "a.wav"}).out).size(), 2U);
}

/// Tones of the pitch and the pace of a voice, from 2 s to 5 s and from 8 s to 10 s.
TEST_F(FilmSound, OfSpeechGivesTitles) {
    Ffmpeg(Folder, "-f lavfi -i "
                   "\"aevalsrc=(between(t\\,2\\,5)+between(t\\,8\\,10))*(0.01+0.5*pow(sin(2*PI*2*t)"
                   "\\,2))*(sin(2*PI*300*t)+sin(2*PI*900*t)+sin(2*PI*1800*t)+sin(2*PI*3000*t))/4"
                   "+0.001*random(0):s=16000:d=14\" a.wav");
    const Ran ran = Run({"speech", "--track", "1", "a.wav", "out.srt"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.err, "");
    const Loaded titles = LoadText("out.srt", FileText(Folder / "out.srt"));
    ASSERT_EQ(titles.Titles().size(), 2U);
    EXPECT_NEAR(titles.Titles()[0].start, 2, 0.15);
    EXPECT_NEAR(titles.Titles()[0].end, 5, 0.15);
    EXPECT_NEAR(titles.Titles()[1].start, 8, 0.15);
    EXPECT_NEAR(titles.Titles()[1].end, 10, 0.15);
    EXPECT_EQ(titles.Titles()[0].text, "...");
}

struct FaultRow {
    std::vector<std::string> words;
    int code;
    const char* message;
};

class FilmFault : public FilmSound, public testing::WithParamInterface<FaultRow> {};

TEST_P(FilmFault, IsTold) {
    Ffmpeg(Folder, ClickSound(1) + "a.wav");
    PutFile(Folder / "text.avi", "no film");
    const Ran ran = Run(GetParam().words);
    EXPECT_EQ(ran.code, GetParam().code);
    EXPECT_EQ(ran.out, "");
    EXPECT_NE(ran.err.find(GetParam().message), std::string::npos) << ran.err;
    EXPECT_FALSE(std::filesystem::exists(Folder / "out.srt"));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FilmFault,
    testing::Values(
        FaultRow{{"sound", "missing.avi"}, 1, "missing.avi: cannot be opened"},
        FaultRow{{"sound", "text.avi"}, 1, "text.avi: no sound that can be read"},
        FaultRow{{"sound", "--track", "2", "a.wav"}, 1, "a.wav: no such sound track"},
        FaultRow{{"speech", "missing.avi", "out.srt"}, 1, "missing.avi: cannot be opened"},
        FaultRow{{"sound", "a.wav", "a.wav"}, 2, "sound needs one file name"},
        FaultRow{{"speech", "a.wav"}, 2, "speech needs two file names"},
        FaultRow{{"sound", "--track", "0", "a.wav"}, 2, "\"0\" makes no sense for --track"},
        FaultRow{{"sound", "--track", "1.5", "a.wav"}, 2, "makes no sense for --track"},
        FaultRow{{"sound", "--step", "0", "a.wav"}, 2, "makes no sense for --step"},
        FaultRow{{"sound", "--from", "soon", "a.wav"}, 2, "makes no sense for --from"},
        FaultRow{{"sound", "--to", "", "a.wav"}, 2, "makes no sense for --to"}));

} // namespace
