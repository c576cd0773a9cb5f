// Linked with the part that takes the place of FFmpeg's where the program is built without.
#include "cli/commandline.h"
#include "media/mediafile.h"
#include "sound/soundmapper.h"
#include "tests/core/formattesting.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

TEST(WithoutSound, EveryFilmIsSilent) {
    const TestFolder folder;
    PutFile(folder / "film.avi", "film");
    EXPECT_FALSE(SoundAvailable());
    EXPECT_EQ(MediaFile::Read(folder / "film.avi"), std::nullopt);
    EXPECT_EQ(MediaFile().PlayedTrack(), 0);
    SoundMapper::Wish wish;
    wish.film = folder / "film.avi";
    SoundMapper mapper(wish);
    mapper.Wait();
    EXPECT_EQ(mapper.Now(), SoundMapper::State::NoSound);
}

TEST(WithoutSound, TheCommandsSaySo) {
    const TestFolder folder;
    PutFile(folder / "film.avi", "film");
    for (const auto& words : {std::vector<std::string>{"sound", (folder / "film.avi").string()},
                              std::vector<std::string>{"speech", (folder / "film.avi").string(),
                                                       (folder / "out.srt").string()}}) {
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(RunCommandLine(words, out, err), ExitCode::Failed);
        EXPECT_EQ(out.str(), "");
        EXPECT_NE(err.str().find("this build has no sound"), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(folder / "out.srt"));
    }
}

} // namespace
