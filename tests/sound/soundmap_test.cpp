#include "sound/soundmap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <thread>

namespace {

/// All buckets of all levels alike.
SoundPage Even(float least, float greatest, float power) {
    SoundPage page;
    page.least.fill(PackSample(least));
    page.greatest.fill(PackSample(greatest));
    page.loudness.fill(PackPower(power));
    return page;
}

/// Silence but for one millisecond.
SoundPage Click(int millisecond) {
    SoundPage page = Even(0, 0, 0);
    for (int level = 0; level < SoundPage::Levels; ++level) {
        const auto at = static_cast<std::size_t>(
            SoundPage::First(level) + millisecond / SoundPage::BucketMilliseconds(level));
        page.least[at] = PackSample(-0.5F);
        page.greatest[at] = PackSample(1);
        page.loudness[at] = PackPower(1);
    }
    return page;
}

SpeechPage Speech(std::initializer_list<std::pair<int, int>> spans) {
    SpeechPage page{};
    for (const auto& [from, to] : spans)
        std::fill(page.fine.begin() + from, page.fine.begin() + to, 255);
    for (std::size_t i = 0; i < page.coarse.size(); ++i) {
        int sum = 0;
        for (std::size_t j = 0; j < SpeechPage::Factor; ++j)
            sum += page.fine[i * SpeechPage::Factor + j];
        page.coarse[i] = static_cast<std::uint8_t>(sum / SpeechPage::Factor);
    }
    return page;
}

std::vector<SoundColumn> Columns(const SoundMap& map, double from, double step, std::size_t count) {
    std::vector<SoundColumn> columns(count);
    map.Columns(from, step, columns);
    return columns;
}

TEST(Packing, KeepsQuietSamplesAsFineAsLoudOnes) {
    for (const float sample : {-1.0F, -0.5F, -0.01F, -0.0001F, 0.0F, 0.0001F, 0.003F, 0.7F, 1.0F}) {
        const float back = UnpackSample(PackSample(sample));
        EXPECT_NEAR(back, sample, std::abs(sample) * 0.2F + 0.0001F) << sample;
    }
    EXPECT_EQ(UnpackSample(PackSample(5)), 1);
    EXPECT_EQ(UnpackSample(PackSample(-5)), -1);
}

TEST(Packing, KeepsLoudnessToAQuarterDecibel) {
    for (const float decibels : {0.0F, -0.3F, -6.0F, -33.3F, -90.0F})
        EXPECT_NEAR(UnpackLoudness(PackPower(std::pow(10.0F, decibels / 10))), decibels, 0.26F);
    for (float power = 1e-11F; power < 1.2F; power *= 1.0007F) {
        const float decibels = std::clamp(10 * std::log10(power), Silence, 0.0F);
        EXPECT_EQ(PackPower(power), std::lround((decibels - Silence) * 2)) << power;
    }
    EXPECT_EQ(UnpackLoudness(PackPower(0)), Silence);
    EXPECT_EQ(UnpackLoudness(PackPower(-1)), Silence);
    EXPECT_EQ(UnpackLoudness(PackPower(std::nanf(""))), Silence);
    EXPECT_EQ(UnpackLoudness(PackPower(100)), 0);
}

struct LengthRow {
    double length;
    std::size_t pages;
};

class MapLength : public testing::TestWithParam<LengthRow> {};

TEST_P(MapLength, GivesThePages) {
    const SoundMap map(GetParam().length);
    EXPECT_EQ(map.Pages(), GetParam().pages);
    EXPECT_EQ(map.Complete(), GetParam().pages == 0);
    EXPECT_EQ(map.Shape(GetParam().pages), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Rows, MapLength,
                         testing::Values(LengthRow{-1, 0}, LengthRow{0, 0}, LengthRow{0.0001, 1},
                                         LengthRow{5.12, 1}, LengthRow{5.121, 2},
                                         LengthRow{1e9, 33750}));

TEST(SoundMap, IsUnknownUntilPagesAreAdded) {
    SoundMap map(12);
    for (const SoundColumn& column : Columns(map, -1, 1, 14))
        EXPECT_FALSE(column.known);
    map.Add(1, Even(-0.5F, 0.5F, 0.25F));
    EXPECT_NEAR(map.Progress(), 1.0 / 6, 1e-9);
    const auto columns = Columns(map, 4.12, 1, 8);
    for (std::size_t i = 0; i < columns.size(); ++i)
        EXPECT_EQ(columns[i].known, i >= 1 && i <= 6) << i;
    EXPECT_NEAR(columns[2].loudness, -6, 0.26);
}

TEST(SoundMap, KeepsThePageThatWasAddedFirst) {
    SoundMap map(5);
    map.Add(0, Even(0, 1, 1));
    const auto changes = map.Changes();
    map.Add(0, Even(0, 0, 0));
    EXPECT_EQ(map.Changes(), changes);
    EXPECT_EQ(Columns(map, 0, 1, 1)[0].greatest, 1);
}

class Zoom : public testing::TestWithParam<double> {};

TEST_P(Zoom, ShowsEveryClickOnceAndWhereItIs) {
    constexpr int Clicks[] = {0, 1, 255, 1023, 1024, 3001, 5119};
    const double step = GetParam();
    for (const int click : Clicks) {
        SoundMap map(10.24);
        map.Add(0, Click(click));
        map.Add(1, Even(0, 0, 0));
        const auto count = static_cast<std::size_t>(10.24 / step) + 1;
        const auto columns = Columns(map, 0, step, count);
        std::size_t loud = 0;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].greatest < 0.9F)
                continue;
            ++loud;
            const double begin = static_cast<double>(i) * step;
            const double slack = 0.0011 + step / 32;
            EXPECT_LE(begin, click / 1000.0 + slack) << click;
            EXPECT_GE(begin + step, click / 1000.0 - slack) << click;
            EXPECT_NEAR(columns[i].least, -0.5, 0.01);
        }
        EXPECT_GE(loud, 1U) << click;
        EXPECT_LE(loud, step < 0.001 ? static_cast<std::size_t>(0.0011 / step) + 1 : 1U) << click;
    }
}

INSTANTIATE_TEST_SUITE_P(Steps, Zoom,
                         testing::Values(0.0004, 0.001, 0.0017, 0.002, 0.0083, 0.05, 0.33, 1.0, 2.7,
                                         10.24));

TEST(SoundMap, AnswersOddQuestions) {
    SoundMap map(1);
    map.Add(0, Even(-1, 1, 1));
    constexpr double Far = std::numeric_limits<double>::max();
    for (const double from : {-Far, -5.0, 1.0, 2.0, Far})
        EXPECT_FALSE(Columns(map, from, 0.1, 1)[0].known) << from;
    EXPECT_TRUE(Columns(map, -5, 10, 1)[0].known);
    EXPECT_TRUE(Columns(map, 0.9995, 0.1, 1)[0].known);
    map.Columns(0, 1, {});
    EXPECT_EQ(map.Speech(-0.01), std::nullopt);
    EXPECT_EQ(map.Speech(1), std::nullopt);
    EXPECT_EQ(map.Speech(0.5), std::nullopt);
}

TEST(SoundMap, TellsSpeech) {
    SoundMap map(7);
    map.Add(0, Even(-1, 1, 1));
    map.Add(0, Speech({{100, 200}, {500, 512}}));
    EXPECT_EQ(map.Speech(0.999), 0);
    EXPECT_EQ(map.Speech(1), 1);
    EXPECT_EQ(map.Speech(1.999), 1);
    EXPECT_EQ(map.Speech(2), 0);
    EXPECT_EQ(map.Speech(6), std::nullopt);
    const std::vector<float> curve = map.SpeechCurve();
    ASSERT_EQ(curve.size(), 700U);
    EXPECT_EQ(curve[99], 0);
    EXPECT_EQ(curve[100], 1);
    EXPECT_EQ(curve[512], 0);
    for (const double step : {0.002, 0.01, 0.1}) {
        const auto columns = Columns(map, 1 - step, step, 2);
        EXPECT_EQ(columns[0].speech, 0) << step;
        EXPECT_EQ(columns[1].speech, 1) << step;
    }
    EXPECT_NEAR(Columns(map, 0, 4, 1)[0].speech, 0.25, 0.01);
}

TEST(SoundMap, FindsSpansAndEdgesOfSpeech) {
    SoundMap map(10);
    map.Add(0, Speech({{100, 200}, {500, 512}}));
    map.Add(1, Speech({{0, 38}, {480, 512}}));
    const auto spans = map.SpeechSpans();
    ASSERT_EQ(spans.size(), 3U);
    EXPECT_EQ(spans[0].start, 1);
    EXPECT_EQ(spans[0].end, 2);
    EXPECT_EQ(spans[1].start, 5);
    EXPECT_EQ(spans[1].end, 5.5);
    EXPECT_EQ(spans[2].start, 9.92);
    EXPECT_EQ(spans[2].end, 10);

    constexpr auto Forward = SoundMap::Direction::Forward;
    constexpr auto Back = SoundMap::Direction::Back;
    std::vector<double> found;
    for (auto edge = map.NextSpeechEdge(-1, Forward); edge;
         edge = map.NextSpeechEdge(*edge, Forward))
        found.push_back(*edge);
    const std::vector<double> edges{1, 2, 5, 5.5, 9.92, 10};
    EXPECT_EQ(found, edges);
    found.clear();
    for (auto edge = map.NextSpeechEdge(11, Back); edge; edge = map.NextSpeechEdge(*edge, Back))
        found.push_back(*edge);
    EXPECT_EQ(found, std::vector<double>(edges.rbegin(), edges.rend()));
    EXPECT_EQ(map.NextSpeechEdge(1.0005, Forward), 2);
    EXPECT_EQ(map.NextSpeechEdge(0.9995, Forward), 2);
    EXPECT_EQ(map.NextSpeechEdge(0.9985, Forward), 1);
    EXPECT_EQ(SoundMap(0).NextSpeechEdge(0, Forward), std::nullopt);
}

TEST(SoundMap, ComesFromBytes) {
    constexpr std::size_t Before = 7;
    const auto bytesOf = [](std::size_t size) {
        return std::make_unique<char[]>(size);
    };
    constexpr std::size_t Size = Before + 2 * (sizeof(SoundPage) + sizeof(SpeechPage));
    auto bytes = bytesOf(Size);
    const SoundPage shape = Click(10);
    const SpeechPage speech = Speech({{1, 2}});
    std::memcpy(bytes.get() + Before + sizeof shape, &shape, sizeof shape);
    std::memcpy(bytes.get() + Before + 2 * sizeof shape + sizeof speech, &speech, sizeof speech);
    const auto map = SoundMap::OfBytes(6, std::move(bytes), Size, Before);
    ASSERT_NE(map, nullptr);
    EXPECT_TRUE(map->Complete());
    EXPECT_EQ(Columns(*map, 5.13, 0.001, 1)[0].greatest, 1);
    EXPECT_EQ(map->SpeechSpans().front().start, 5.13);
    map->Add(0, Even(0, 1, 1));
    EXPECT_EQ(Columns(*map, 0, 0.001, 1)[0].greatest, 0);

    for (const std::size_t size : {std::size_t{0}, Before, Size - 1, Size + 1})
        EXPECT_EQ(SoundMap::OfBytes(6, bytesOf(size), size, Before), nullptr) << size;
}

TEST(SoundMap, IsReadWhileItGrows) {
    SoundMap map(400 * SoundPage::Milliseconds / 1000.0);
    const auto grow = [&map](std::size_t first) {
        for (std::size_t page = first; page < map.Pages(); page += 2) {
            map.Add(page, Even(-1, 1, 1));
            map.Add(page, Speech({{0, SpeechPage::Values}}));
        }
    };
    std::thread even(grow, 0);
    std::thread odd(grow, 1);
    std::vector<SoundColumn> columns(500);
    std::size_t known = 0;
    while (!map.Complete()) {
        map.Columns(0, map.Length() / 500, columns);
        std::size_t now = 0;
        for (const SoundColumn& column : columns) {
            now += column.known ? 1 : 0;
            EXPECT_TRUE(!column.known || (column.greatest == 1 && column.least == -1));
        }
        EXPECT_GE(now, known);
        known = now;
    }
    even.join();
    odd.join();
    EXPECT_EQ(map.SpeechSpans().size(), 1U);
}

} // namespace
