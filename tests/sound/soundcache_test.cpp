#include "sound/soundcache.h"

#include "tests/core/formattesting.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>

namespace {

namespace fs = std::filesystem;

class Cache : public testing::Test {
  public:
    Cache() { PutFile(Film, "film"); }

    static std::shared_ptr<SoundMap> Made(double length, float level) {
        auto made = std::make_shared<SoundMap>(length);
        SoundMap& map = *made;
        SpeechPage speech{};
        speech.fine[7] = 255;
        const std::vector<float> samples(SoundPage::Milliseconds * 16, level);
        for (std::size_t page = 0; page < map.Pages(); ++page) {
            map.Add(page, MakePage(samples));
            map.Add(page, speech);
        }
        return made;
    }

    static float LevelOf(const SoundMap& map) {
        SoundColumn column;
        map.Columns(map.Length() - 0.01, 0.001, {&column, 1});
        return column.greatest;
    }

    fs::path Entry() const {
        fs::path entry;
        for (const auto& file : fs::directory_iterator(Kept))
            entry = file.path();
        return entry;
    }

    std::size_t Entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(Kept), fs::directory_iterator()));
    }

    const TestFolder Folder;
    const fs::path Film = Folder / "film.avi";
    const fs::path Kept = Folder / "deep" / "kept";
    const SoundCache Sounds{Kept};
};

TEST_F(Cache, GivesBackWhatWasKept) {
    EXPECT_EQ(Sounds.Load(Film, 1), nullptr);
    Sounds.Store(Film, 1, *Made(12.3, 0.25F));
    const auto map = Sounds.Load(Film, 1);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->Length(), 12.3);
    EXPECT_TRUE(map->Complete());
    EXPECT_NEAR(LevelOf(*map), 0.25, 0.01);
    ASSERT_EQ(map->SpeechSpans().size(), 3U);
    EXPECT_EQ(map->SpeechSpans()[1].start, 5.19);
    EXPECT_EQ(Entries(), 1U);
}

TEST_F(Cache, KnowsFilmsAndTracksApart) {
    Sounds.Store(Film, 1, *Made(5, 0.25F));
    EXPECT_EQ(Sounds.Load(Film, 0), nullptr);
    EXPECT_EQ(Sounds.Load(Film, 2), nullptr);
    fs::copy_file(Film, Folder / "copy.avi");
    EXPECT_EQ(Sounds.Load(Folder / "copy.avi", 1), nullptr);
    EXPECT_EQ(Sounds.Load(Folder / "missing.avi", 1), nullptr);
    fs::create_symlink(Film, Folder / "link.avi");
    EXPECT_NE(Sounds.Load(Folder / "link.avi", 1), nullptr);
}

TEST_F(Cache, ForgetsAFilmThatChanged) {
    Sounds.Store(Film, 1, *Made(5, 0.25F));
    fs::last_write_time(Film, fs::last_write_time(Film) + std::chrono::seconds(2));
    EXPECT_EQ(Sounds.Load(Film, 1), nullptr);
    Sounds.Store(Film, 1, *Made(5, 0.5F));
    EXPECT_NEAR(LevelOf(*Sounds.Load(Film, 1)), 0.5, 0.01);
    PutFile(Film, "longer film");
    EXPECT_EQ(Sounds.Load(Film, 1), nullptr);
}

TEST_F(Cache, KeepsNoUnfinishedMap) {
    Sounds.Store(Film, 1, SoundMap(5));
    EXPECT_EQ(Sounds.Load(Film, 1), nullptr);
    std::stop_source stop;
    stop.request_stop();
    Sounds.Store(Film, 1, *Made(5, 0.25F), stop.get_token());
    EXPECT_EQ(Sounds.Load(Film, 1), nullptr);
    EXPECT_EQ(Entries(), 0U);
}

TEST_F(Cache, IgnoresADamagedEntryAndReplacesIt) {
    Sounds.Store(Film, 1, *Made(5, 0.25F));
    const fs::path entry = Entry();
    const std::string whole = FileText(entry);
    for (const std::size_t at :
         {std::size_t{0}, std::size_t{8}, std::size_t{12}, std::size_t{17}, std::size_t{25},
          std::size_t{40}, std::size_t{3000}, whole.size() - 1}) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x10);
        PutFile(entry, damaged);
        EXPECT_EQ(Sounds.Load(Film, 1), nullptr) << at;
    }
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{20}, std::size_t{32}, whole.size() / 2, whole.size() - 1}) {
        PutFile(entry, whole.substr(0, size));
        EXPECT_EQ(Sounds.Load(Film, 1), nullptr) << size;
    }
    PutFile(entry, whole + "x");
    EXPECT_EQ(Sounds.Load(Film, 1), nullptr);
    PutFile(entry, "another program's file");
    EXPECT_EQ(Sounds.Load(Film, 1), nullptr);
    Sounds.Store(Film, 1, *Made(5, 0.5F));
    EXPECT_NEAR(LevelOf(*Sounds.Load(Film, 1)), 0.5, 0.01);
}

TEST_F(Cache, DoesWithoutAFolder) {
    PutFile(Folder / "file", "");
    for (const SoundCache& none : {SoundCache(fs::path()), SoundCache(Folder / "file" / "x")}) {
        none.Store(Film, 1, *Made(5, 0.25F));
        EXPECT_EQ(none.Load(Film, 1), nullptr);
    }
}

TEST_F(Cache, DropsWhatWasNotUsedForLongest) {
    const auto size = [this] {
        Sounds.Store(Film, 1, *Made(5, 0.25F));
        return fs::file_size(Entry());
    }();
    fs::remove_all(Kept);
    const SoundCache small(Kept, size * 5 / 2);
    const auto age = [this](int track, int hours) {
        // The youngest entry is the one that was just written.
        fs::path youngest;
        for (const auto& file : fs::directory_iterator(Kept))
            if (youngest.empty() || file.last_write_time() > fs::last_write_time(youngest))
                youngest = file.path();
        fs::last_write_time(youngest, fs::file_time_type::clock::now() - std::chrono::hours(hours));
        return track;
    };
    small.Store(Film, 1, *Made(5, 0.25F));
    age(1, 3);
    small.Store(Film, 2, *Made(5, 0.25F));
    age(2, 2);
    EXPECT_NE(small.Load(Film, 1), nullptr);
    small.Store(Film, 3, *Made(5, 0.25F));
    EXPECT_NE(small.Load(Film, 1), nullptr);
    EXPECT_EQ(small.Load(Film, 2), nullptr);
    EXPECT_NE(small.Load(Film, 3), nullptr);
}

TEST_F(Cache, ClearsAwayWhatACrashLeft) {
    fs::create_directories(Kept);
    PutFile(Kept / "old.new", "unfinished");
    PutFile(Kept / "young.new", "unfinished");
    PutFile(Kept / "notes.txt", "someone's");
    for (const char* name : {"old.new", "notes.txt"})
        fs::last_write_time(Kept / name, fs::file_time_type::clock::now() - std::chrono::hours(2));
    Sounds.Store(Film, 1, *Made(5, 0.25F));
    EXPECT_FALSE(fs::exists(Kept / "old.new"));
    EXPECT_TRUE(fs::exists(Kept / "young.new"));
    EXPECT_TRUE(fs::exists(Kept / "notes.txt"));
}

#ifndef _WIN32
TEST_F(Cache, LiesWhereTheUserWantsIt) {
    const std::string before = std::getenv("XDG_CACHE_HOME") ? std::getenv("XDG_CACHE_HOME") : "";
    setenv("XDG_CACHE_HOME", Folder.Path().c_str(), 1);
    SoundCache().Store(Film, 1, *Made(5, 0.25F));
    EXPECT_TRUE(fs::exists(Folder / "Tevo" / "Quelmar" / "sound"));
    EXPECT_NE(SoundCache().Load(Film, 1), nullptr);
    setenv("XDG_CACHE_HOME", "relative", 1);
    EXPECT_EQ(SoundCache().Load(Film, 1), nullptr);
    if (before.empty())
        unsetenv("XDG_CACHE_HOME");
    else
        setenv("XDG_CACHE_HOME", before.c_str(), 1);
}
#endif

} // namespace
