#include "sound/soundmapper.h"

#include "sound/pageplan.h"
#include "tests/sound/filmmaking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

using State = SoundMapper::State;

class Mapping : public testing::Test {
  public:
    Mapping() { setenv("XDG_CACHE_HOME", (Folder / "cache").c_str(), 1); }

    SoundMapper::Wish Wish(const std::string& file, double position = 0) const {
        SoundMapper::Wish wish;
        wish.film = Folder / file;
        wish.position = position;
        wish.background = false;
        return wish;
    }

    /// Where the map is loudest about each click, in seconds.
    static std::vector<double> ClicksIn(const SoundMap& map) {
        std::vector<SoundColumn> columns(static_cast<std::size_t>(map.Length() * 1000));
        map.Columns(0, 0.001, columns);
        std::vector<double> clicks;
        for (std::size_t i = 1; i + 1 < columns.size(); ++i)
            if (columns[i].greatest > 0.5F && columns[i].greatest >= columns[i - 1].greatest &&
                columns[i].greatest > columns[i + 1].greatest)
                clicks.push_back(static_cast<double>(i) / 1000);
        return clicks;
    }

    const TestFolder Folder;
};

TEST_F(Mapping, MapsAFilm) {
    Ffmpeg(Folder, ClickSound(30) + "a.flac");
    for (const int threads : {1, 2, 5}) {
        SoundMapper::Wish wish = Wish("a.flac", 17);
        wish.threads = threads;
        wish.cache = false;
        SoundMapper mapper(wish);
        mapper.Wait();
        ASSERT_EQ(mapper.Now(), State::Complete);
        EXPECT_FALSE(mapper.FromCache());
        const auto map = mapper.Map();
        ASSERT_NE(map, nullptr);
        EXPECT_TRUE(map->Complete());
        EXPECT_TRUE(map->Knows(0, 30));
        EXPECT_EQ(map->Length(), 30);
        const std::vector<double> clicks = ClicksIn(*map);
        ASSERT_EQ(clicks.size(), 12U);
        for (std::size_t i = 0; i < clicks.size(); ++i)
            EXPECT_NEAR(clicks[i], FirstClick + static_cast<double>(i) * ClickPeriod, 0.001);
    }
}

TEST_F(Mapping, GivesWayToOthersWhenItIsToldTo) {
    Ffmpeg(Folder, ClickSound(12) + "a.flac");
    SoundMapper::Wish wish = Wish("a.flac");
    wish.background = true;
    SoundMapper mapper(wish);
    mapper.Wait();
    EXPECT_EQ(ClicksIn(*mapper.Map()).size(), 5U);
}

TEST_F(Mapping, TakesTheMapFromTheCache) {
    Ffmpeg(Folder, ClickSound(12) + "a.flac");
    std::vector<double> clicks;
    {
        SoundMapper mapper(Wish("a.flac"));
        mapper.Wait();
        EXPECT_FALSE(mapper.FromCache());
        clicks = ClicksIn(*mapper.Map());
    }
    SoundMapper mapper(Wish("a.flac"));
    mapper.Wait();
    EXPECT_EQ(mapper.Now(), State::Complete);
    EXPECT_TRUE(mapper.FromCache());
    EXPECT_EQ(ClicksIn(*mapper.Map()), clicks);
    std::filesystem::remove_all(Folder / "cache");
    SoundMapper again(Wish("a.flac"));
    again.Wait();
    EXPECT_FALSE(again.FromCache());
    EXPECT_EQ(ClicksIn(*again.Map()), clicks);
}

TEST_F(Mapping, TellsWhatChanges) {
    Ffmpeg(Folder, ClickSound(30) + "a.flac");
    std::atomic<int> told = 0;
    std::atomic<bool> busy = false;
    std::atomic<bool> twice = false;
    {
        SoundMapper mapper(Wish("a.flac"), [&] {
            twice = busy.exchange(true) || twice;
            ++told;
            busy = false;
        });
        mapper.Wait();
    }
    // Growing, six pages, complete.
    EXPECT_EQ(told, 8);
    EXPECT_FALSE(twice);
}

TEST_F(Mapping, BeginsWhereItIsLookedAt) {
    Ffmpeg(Folder, "-f lavfi -i anoisesrc=d=300:r=16000:a=0.1 -c:a pcm_u8 a.wav");
    SoundMapper::Wish wish = Wish("a.wav", 200);
    wish.threads = 1;
    std::atomic<bool> first = true;
    std::atomic<bool> right = false;
    std::atomic<const SoundMapper*> asked = nullptr;
    SoundMapper mapper(wish, [&] {
        const SoundMapper* now = asked;
        const auto map = now != nullptr ? now->Map() : nullptr;
        SoundColumn column;
        if (map == nullptr || map->Changes() == 0)
            return;
        map->Columns(200, 0.01, {&column, 1});
        if (first.exchange(false))
            right = column.known;
    });
    asked = &mapper;
    mapper.WaitFor(200, 210);
    EXPECT_TRUE(mapper.Map()->Knows(200, 210));
    mapper.Wait();
    EXPECT_EQ(mapper.Now(), State::Complete);
    EXPECT_TRUE(right);
}

TEST_F(Mapping, EndsSoonWhenItIsNotWanted) {
    Ffmpeg(Folder, "-f lavfi -i anoisesrc=d=900:r=16000:a=0.1 -c:a pcm_u8 a.wav");
    for (const int milliseconds : {0, 1, 5, 20, 60}) {
        auto mapper = std::make_unique<SoundMapper>(Wish("a.wav"));
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        std::shared_ptr<const SoundMap> map = mapper->Map();
        mapper.reset();
        EXPECT_FALSE(map != nullptr && map->Complete());
    }
    EXPECT_FALSE(std::filesystem::exists(Folder / "cache" / "Tevo"));
}

TEST_F(Mapping, SaysWhenThereIsNoSound) {
    Ffmpeg(Folder, Pictures(1) + "-c:v mpeg4 silent.avi");
    PutFile(Folder / "text.avi", "no film\n");
    for (const char* file : {"silent.avi", "text.avi", "missing.avi", "."}) {
        SoundMapper mapper(Wish(file));
        mapper.Wait();
        EXPECT_EQ(mapper.Now(), State::NoSound) << file;
        EXPECT_EQ(mapper.Map(), nullptr) << file;
        mapper.WaitFor(0, 1);
        mapper.LookAt(5);
    }
}

TEST(PagePlan, TakesAllPagesOnceAndTheNearestFirst) {
    for (const std::size_t looked : {0U, 30U, 99U}) {
        PagePlan plan(100);
        plan.LookAt(looked);
        std::vector<int> taken(100);
        std::optional<std::size_t> behind[2];
        std::size_t round = 0;
        while (const auto pages = plan.Take(behind[round % 2])) {
            if (round == 0) {
                EXPECT_EQ(pages->first, looked);
            }
            EXPECT_LE(pages->count, PagePlan::Stretch);
            for (std::size_t i = 0; i < pages->count; ++i)
                ++taken[pages->first + i];
            behind[round % 2] = pages->first + pages->count;
            // What is near is taken before what is far.
            if (round == 3) {
                const auto near = taken.begin() + static_cast<std::ptrdiff_t>(looked);
                const auto left = std::min<std::ptrdiff_t>(10, taken.end() - near);
                EXPECT_EQ(std::count(near, near + left, 0), 0);
            }
            ++round;
        }
        EXPECT_EQ(std::count(taken.begin(), taken.end(), 1), 100);
    }
}

TEST(PagePlan, FollowsWhoLooksElsewhere) {
    PagePlan plan(1000);
    EXPECT_EQ(plan.Take({})->first, 0U);
    plan.LookAt(700);
    EXPECT_EQ(plan.Take(PagePlan::Stretch)->first, 700U);
    EXPECT_EQ(plan.Take({})->first, 700U - PagePlan::Stretch);
}

} // namespace
