#include "lane/laneground.h"

#include "sound/soundmap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr LanePixel Ground = 0xff000000;
constexpr LanePixel Unknown = 0xff111111;
constexpr LanePixel Ruler = 0xff222222;
constexpr LanePixel Wave = 0xff808080;
constexpr LanePixel BlockColour = 0xff0000ff;
constexpr LanePixel ChosenColour = 0xff00ff00;
constexpr int Width = 200;
constexpr int Height = 100;
constexpr int RulerHeight = 20;

LaneColours Colours() {
    LaneColours colours;
    colours.ground = Ground;
    colours.speechGround = 0xff400000;
    colours.unknown = Unknown;
    colours.wave = Wave;
    colours.speechWave = 0xffff0000;
    colours.ruler = Ruler;
    colours.block = BlockColour;
    colours.chosen = ChosenColour;
    return colours;
}

/// Two pages, the first one with a sound of this amplitude and speech in its first half.
std::unique_ptr<SoundMap> Map(float amplitude, bool whole) {
    auto owned = std::make_unique<SoundMap>(10.24);
    SoundMap& map = *owned;
    SoundPage page;
    page.least.fill(PackSample(-amplitude));
    page.greatest.fill(PackSample(amplitude));
    page.loudness.fill(PackPower(amplitude * amplitude / 4));
    SpeechPage speech{};
    std::fill_n(speech.fine.begin(), speech.fine.size() / 2, 255);
    std::fill_n(speech.coarse.begin(), speech.coarse.size() / 2, 255);
    map.Add(0, page);
    map.Add(0, speech);
    if (whole) {
        map.Add(1, page);
        map.Add(1, speech);
    }
    return owned;
}

struct Picture {
    std::vector<LanePixel> pixels = std::vector<LanePixel>(Width * Height, 0);
    bool complete = false;

    LanePixel At(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * Width + static_cast<std::size_t>(x)];
    }
};

/// 50 ms in a pixel, from 0.
Picture Paint(const LaneContents& contents, double from = 0) {
    Picture picture;
    LaneGround ground;
    ground.Look(Colours());
    LanePiece piece;
    piece.pixels = picture.pixels.data();
    piece.stride = Width;
    piece.width = Width;
    piece.from = from;
    piece.step = 0.05;
    piece.shape = {Height, RulerHeight, contents.titles != nullptr ? contents.titles->Tracks() : 1};
    picture.complete = ground.Paint(piece, contents);
    return picture;
}

TEST(LaneGround, WithoutSoundItIsUnknownBelowTheRuler) {
    const Picture picture = Paint({});
    EXPECT_FALSE(picture.complete);
    EXPECT_EQ(picture.At(3, 0), Ruler);
    EXPECT_EQ(picture.At(3, RulerHeight - 1), Ruler);
    for (int y = RulerHeight; y < Height; ++y)
        EXPECT_EQ(picture.At(100, y), Unknown);
}

TEST(LaneGround, LoudSoundFillsTheHeightAndSilenceNone) {
    const auto loud = Map(1, true);
    const Picture picture = Paint({loud.get(), nullptr, {}});
    EXPECT_TRUE(picture.complete);
    EXPECT_NE(picture.At(80, RulerHeight), Ground);
    EXPECT_EQ(picture.At(80, 60), Wave);
    const auto silent = Map(0, true);
    const Picture empty = Paint({silent.get(), nullptr, {}});
    EXPECT_EQ(empty.At(80, RulerHeight), Ground);
    EXPECT_EQ(empty.At(80, 60), Ground);
}

TEST(LaneGround, LoudnessLiesWithinThePeaks) {
    const auto map = Map(0.25F, true);
    const Picture picture = Paint({map.get(), nullptr, {}});
    // Half the height is the peaks', a third the loudness's.
    EXPECT_EQ(picture.At(80, 62), Wave);
    EXPECT_EQ(picture.At(80, 75), Mixed(Ground, Wave, 0.45));
    EXPECT_EQ(picture.At(80, 85), Ground);
}

TEST(LaneGround, SpeechIsTinted) {
    const auto map = Map(0.25F, true);
    const Picture picture = Paint({map.get(), nullptr, {}});
    EXPECT_EQ(picture.At(20, 95), 0xff400000);
    EXPECT_EQ(picture.At(20, 60), 0xffff0000);
    EXPECT_EQ(picture.At(80, 95), Ground);
}

TEST(LaneGround, WhatIsNotKnownYetIsSeenAndNotFinished) {
    const auto map = Map(1, false);
    const Picture picture = Paint({map.get(), nullptr, {}});
    EXPECT_FALSE(picture.complete);
    EXPECT_NE(picture.At(80, 60), Unknown);
    EXPECT_EQ(picture.At(150, 60), Unknown);
}

TEST(LaneGround, WhereSpeechIsStillLookedForIsNotFinished) {
    for (const bool speech : {false, true}) {
        SoundMap map(15.36);
        for (std::size_t page = 0; page < map.Pages(); ++page) {
            map.Add(page, SoundPage());
            if (page < 2 && speech)
                map.Add(page, SpeechPage{});
        }
        ASSERT_FALSE(map.Complete());
        EXPECT_EQ(Paint({&map, nullptr, {}}).complete, speech);
        EXPECT_FALSE(Paint({&map, nullptr, {}}, 1).complete);
    }
}

TEST(LaneGround, TitlesAreBlocksOfTheirLengthInPixels) {
    LaneTitles titles;
    titles.Assign({1, 4}, {2, 6});
    const std::uint8_t chosen[] = {0, 1};
    const Picture picture = Paint({nullptr, &titles, chosen});
    EXPECT_EQ(picture.At(19, 60), Unknown);
    EXPECT_EQ(picture.At(20, 60), Mixed(Ground, BlockColour, 0.85));
    EXPECT_EQ(picture.At(30, 60), Mixed(Ground, BlockColour, 0.30));
    EXPECT_EQ(picture.At(39, 60), Mixed(Ground, BlockColour, 0.85));
    EXPECT_EQ(picture.At(40, 60), Unknown);
    EXPECT_EQ(picture.At(80, 60), ChosenColour);
    EXPECT_EQ(picture.At(100, 60), Mixed(Ground, ChosenColour, 0.55));
    EXPECT_EQ(picture.At(119, 60), ChosenColour);
}

TEST(LaneGround, APieceFromTheMiddleFitsTheOneBefore) {
    LaneTitles titles;
    titles.Assign({1, 4, 9.9}, {2, 12, 30});
    const auto map = Map(0.5F, true);
    const Picture whole = Paint({map.get(), &titles, {}});
    const Picture rest = Paint({map.get(), &titles, {}}, 2.5);
    for (int y = 0; y < Height; ++y)
        for (int x = 50; x < Width; ++x)
            ASSERT_EQ(whole.At(x, y), rest.At(x - 50, y)) << x << "," << y;
}

TEST(LaneGround, OverlappingTitlesLieOneBelowTheOther) {
    LaneTitles titles;
    titles.Assign({1, 2}, {4, 5});
    const Picture picture = Paint({nullptr, &titles, {}});
    EXPECT_NE(picture.At(30, 40), Unknown);
    EXPECT_EQ(picture.At(30, 80), Unknown);
    EXPECT_NE(picture.At(60, 40), Unknown);
    EXPECT_NE(picture.At(60, 80), Unknown);
    EXPECT_EQ(picture.At(90, 40), Unknown);
}

TEST(LaneGround, TheShortestTitleIsStillAPixelWide) {
    LaneTitles titles;
    titles.Assign({3}, {3});
    const Picture picture = Paint({nullptr, &titles, {}});
    EXPECT_EQ(picture.At(59, 60), Unknown);
    EXPECT_NE(picture.At(60, 60), Unknown);
    EXPECT_EQ(picture.At(61, 60), Unknown);
}

} // namespace
