#include "cli/commandline.h"

#include "tests/core/fittingfilms.h"
#include "tests/sound/babble.h"
#include "tests/sound/filmmaking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace {

constexpr double Length = 300;

class SyncFilm : public testing::Test {
  public:
    SyncFilm() {
        setenv("XDG_CACHE_HOME", (Folder / "cache").c_str(), 1);
        PutFile(Folder / "FILM.wav", Babble(Film));
        Put("RIGHT.srt", Film.titles);
        Put("LATE.srt", Misplaced(Film.titles, -2.4));
    }

    void Put(const char* name, const std::vector<FitTitle>& titles) const {
        std::vector<TestTitle> list;
        for (const FitTitle& title : titles)
            list.push_back({title.start, title.end, title.text});
        PutFile(Folder / name, SavedText(name, list));
    }

    /// The words with a dot that are no options are names in the folder.
    int Run(const std::vector<std::string>& options) {
        std::vector<std::string> words{"sync"};
        for (const std::string& word : options) {
            const bool name = word.find('.') != std::string::npos && !word.starts_with('-');
            words.push_back(name ? (Folder / word).string() : word);
        }
        std::ostringstream out;
        std::ostringstream err;
        const ExitCode code = RunCommandLine(words, out, err);
        Out = out.str();
        Err = err.str();
        return static_cast<int>(code);
    }

    double Error(const char* name) const {
        const std::filesystem::path file = Folder / name;
        const Loaded loaded = LoadText(file.filename().string(), FileText(file));
        const std::vector<TestTitle> titles = loaded.Titles();
        if (titles.size() != Film.titles.size())
            return 1e9;
        double worst = 0;
        for (std::size_t i = 0; i < titles.size(); ++i)
            worst = std::max(worst, std::abs(titles[i].start - Film.titles[i].start));
        return worst;
    }

    std::string Report() const { return FileText(Folder / "REPORT.json"); }

    const FittingFilm Film = MakeFilm(95, Length);
    const TestFolder Folder;
    std::string Out;
    std::string Err;
};

TEST_F(SyncFilm, FitsToTheSound) {
    EXPECT_EQ(Run({"--report", "REPORT.json", "FILM.wav", "LATE.srt", "OUT.srt"}), 0) << Err;
    EXPECT_LT(Error("OUT.srt"), 0.1) << Out;
    EXPECT_NE(Report().find(R"("by": "sound")"), std::string::npos) << Report();
    EXPECT_EQ(Run({"--by", "sound", "FILM.wav", "RIGHT.srt", "SAME.srt"}), 0) << Err;
    EXPECT_EQ(FileText(Folder / "SAME.srt"), FileText(Folder / "RIGHT.srt"));
}

TEST_F(SyncFilm, PrefersATextTrackThatAgreesWithTheSound) {
    Ffmpeg(Folder, "-i FILM.wav -i RIGHT.srt -c:a pcm_s16le -c:s srt FILM.mkv");
    EXPECT_EQ(Run({"--report", "REPORT.json", "FILM.mkv", "LATE.srt", "OUT.srt"}), 0) << Err;
    EXPECT_NE(Report().find(R"("by": "titles")"), std::string::npos) << Report();
    EXPECT_LT(Error("OUT.srt"), 0.02);
}

TEST_F(SyncFilm, KeepsToTheSoundWhenTheTextTrackDoesNotAgree) {
    Ffmpeg(Folder, "-i FILM.wav -i LATE.srt -c:a pcm_s16le -c:s srt FILM.mkv");
    EXPECT_EQ(Run({"--report", "REPORT.json", "FILM.mkv", "LATE.srt", "OUT.srt"}), 0) << Err;
    EXPECT_NE(Report().find(R"("by": "sound")"), std::string::npos) << Report();
    EXPECT_LT(Error("OUT.srt"), 0.1);
    EXPECT_EQ(Run({"--by", "titles", "--track", "1", "FILM.mkv", "RIGHT.srt", "OUT.srt"}), 0);
    EXPECT_NEAR(Error("OUT.srt"), 2.4, 0.05);
}

TEST_F(SyncFilm, SaysWhatATrackLacks) {
    EXPECT_EQ(Run({"--track", "2", "FILM.wav", "LATE.srt", "OUT.srt"}), 1);
    EXPECT_NE(Err.find("no such sound track"), std::string::npos) << Err;
    EXPECT_EQ(Run({"--by", "titles", "FILM.wav", "LATE.srt", "OUT.srt"}), 1);
    EXPECT_NE(Err.find("has no text track"), std::string::npos) << Err;
    EXPECT_FALSE(std::filesystem::exists(Folder / "OUT.srt"));
}

TEST_F(SyncFilm, FitsAWholeFolder) {
    std::filesystem::create_directory(Folder / "films");
    for (const char* name : {"A", "B"}) {
        const std::string film = name;
        std::filesystem::copy_file(Folder / "FILM.wav", Folder / ("films/" + film + ".wav"));
        std::filesystem::copy_file(Folder / "LATE.srt", Folder / ("films/" + film + ".en.srt"));
    }
    std::filesystem::copy_file(Folder / "RIGHT.srt", Folder / "films/A.srt");
    EXPECT_EQ(Run({"--library", "./films", "--dry-run"}), 0);
    EXPECT_FALSE(std::filesystem::exists(Folder / "films/A.en.fitted.srt"));
    EXPECT_EQ(Run({"--library", "./films", "--jobs", "2"}), 0);
    EXPECT_NE(Out.find("3 files: 2 fitted, 1 right, 0 unsure, 0 done before, 0 failed"),
              std::string::npos)
        << Out;
    EXPECT_LT(Error("films/A.en.fitted.srt"), 0.1);
    EXPECT_LT(Error("films/B.en.fitted.srt"), 0.1);
    EXPECT_FALSE(std::filesystem::exists(Folder / "films/A.fitted.srt"));
    EXPECT_EQ(Run({"--library", "./films"}), 0);
    EXPECT_NE(Out.find("0 fitted, 1 right, 0 unsure, 2 done before"), std::string::npos) << Out;

    PutFile(Folder / "films/B.fr.srt", "1\n0:00:01.0 --> 0:00:02.0\nA\n");
    EXPECT_EQ(Run({"--library", "./films"}), 1);
    EXPECT_NE(Out.find("B.fr.srt: A tolerant reading finds "), std::string::npos) << Out;
    EXPECT_NE(Out.find("--repair takes it."), std::string::npos) << Out;
}

} // namespace
