#include "media/soundreader.h"

#include "media/mediafile.h"
#include "tests/sound/filmmaking.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace {

struct ClickRow {
    const char* name;
    const char* extension;
    /// What ffmpeg is told after the pictures (when the file has any) and before the sound.
    const char* before;
    const char* coding;
    /// When the first click is heard, and how sure that is.
    double first;
    double tolerance = 0.0005;
    bool pictures = true;
};

class ClickIn : public testing::TestWithParam<ClickRow> {
  public:
    static constexpr double Seconds = 12;

    /// Made once for all tests.
    static std::filesystem::path Film() {
        static const TestFolder Folder;
        const ClickRow& row = GetParam();
        const std::string name = std::string(row.name) + row.extension;
        if (!std::filesystem::exists(Folder / name))
            Ffmpeg(Folder, (row.pictures ? Pictures(Seconds) : std::string()) + row.before + " " +
                               ClickSound(Seconds) + (row.pictures ? "-map 0:v -map 1:a " : "") +
                               "-shortest " + row.coding + " " + name);
        return Folder / name;
    }
};

TEST_P(ClickIn, IsReadWhereItIs) {
    const auto file = Film();
    const auto reader = SoundReader::Open(file, 0);
    ASSERT_NE(reader, nullptr);
    const std::vector<double> clicks = Clicks(*reader);
    ASSERT_GE(clicks.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(clicks[i], GetParam().first + static_cast<double>(i) * ClickPeriod,
                    GetParam().tolerance);
}

TEST_P(ClickIn, IsReadAtTheSamePlaceAfterASeek) {
    const auto file = Film();
    const auto reader = SoundReader::Open(file, 0);
    ASSERT_NE(reader, nullptr);
    for (const double from : {7.9, 2.02, 0.0, 5.5}) {
        const auto first = static_cast<std::int64_t>(from * SoundReader::Frequency);
        reader->Seek(first);
        SoundReader::Block block;
        ASSERT_TRUE(reader->Read(block));
        EXPECT_EQ(block.first, first);
        const std::vector<double> clicks = Clicks(*reader);
        ASSERT_FALSE(clicks.empty());
        const double next = std::ceil((from - GetParam().first) / ClickPeriod) * ClickPeriod;
        // A time stamp of whole milliseconds is believed where reading begins.
        EXPECT_NEAR(clicks.front(), GetParam().first + std::max(next, 0.0),
                    GetParam().tolerance + 0.0005)
            << from;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ClickIn,
    testing::Values(
        ClickRow{"wav", ".wav", "", "", 1.25, 0.0001, false},
        ClickRow{"flac", ".flac", "", "", 1.25, 0.0001, false},
        ClickRow{"mp3", ".mp3", "", "-c:a libmp3lame", 1.25, 0.0005, false},
        ClickRow{"mp3_of_varying_rate", ".mp3", "", "-c:a libmp3lame -q:a 5", 1.25, 0.0005, false},
        ClickRow{"m4a", ".m4a", "", "-c:a aac", 1.25, 0.0005, false},
        ClickRow{"ogg", ".ogg", "", "-c:a libvorbis", 1.25, 0.0005, false},
        ClickRow{"opus", ".ogg", "", "-c:a libopus", 1.25, 0.0005, false},
        ClickRow{"mov", ".mov", "", "-c:v mpeg4 -c:a pcm_s16le", 1.25, 0.0001},
        ClickRow{"mp4", ".mp4", "", "-c:v libx264 -preset ultrafast -c:a aac", 1.25},
        ClickRow{"mp4_with_late_sound", ".mp4", "-itsoffset 0.7",
                 "-c:v libx264 -preset ultrafast -c:a aac", 1.95, 0.001},
        ClickRow{"mkv", ".mkv", "", "-c:v libx264 -preset ultrafast -c:a flac", 1.25, 0.001},
        ClickRow{"mkv_with_late_sound", ".mkv", "-itsoffset 0.7",
                 "-c:v libx264 -preset ultrafast -c:a flac", 1.95, 0.001},
        ClickRow{"mkv_that_starts_late", ".mkv", "",
                 "-c:v libx264 -preset ultrafast -c:a flac -output_ts_offset 10", 1.25, 0.001},
        ClickRow{"ts_that_starts_late", ".ts", "-itsoffset 0.7",
                 "-c:v mpeg2video -c:a ac3 -output_ts_offset 1000", 1.95, 0.006},
        ClickRow{"mpg_with_late_sound", ".mpg", "-itsoffset 0.7", "-c:v mpeg2video -c:a mp2", 1.95,
                 0.001}),
    [](const auto& row) { return std::string(row.param.name); });

class SoundReading : public testing::Test {
  public:
    /// Reads all; the number of samples, or nothing without sound.
    static std::optional<std::int64_t> ReadAll(const std::filesystem::path& file) {
        const auto reader = SoundReader::Open(file, 0);
        if (reader == nullptr)
            return {};
        std::int64_t next = 0;
        SoundReader::Block block;
        while (reader->Read(block)) {
            EXPECT_EQ(block.first, next);
            EXPECT_FALSE(block.samples.empty());
            for (const float sample : block.samples)
                EXPECT_LE(std::abs(sample), 8);
            next = block.first + static_cast<std::int64_t>(block.samples.size());
        }
        EXPECT_FALSE(reader->Read(block));
        return next;
    }

    std::filesystem::path Made(const std::string& name, const std::string& coding) const {
        Ffmpeg(Folder, ClickSound(6) + coding + " " + name);
        return Folder / name;
    }

    const TestFolder Folder;
};

TEST_F(SoundReading, FillsGapsWithSilence) {
    // From 3 s to 8 s there is no sound.
    Ffmpeg(Folder, Pictures(12) + ClickSound(12) +
                       "-af \"aselect=not(between(t\\,3\\,8))\" -map 0 -map 1 -c:v libx264 "
                       "-preset ultrafast -c:a flac gap.mkv");
    const auto reader = SoundReader::Open(Folder / "gap.mkv", 0);
    ASSERT_NE(reader, nullptr);
    const std::vector<double> clicks = Clicks(*reader);
    ASSERT_EQ(clicks.size(), 3U);
    EXPECT_NEAR(clicks[0], 1.25, 0.001);
    EXPECT_NEAR(clicks[1], 8.75, 0.001);
    EXPECT_NEAR(clicks[2], 11.25, 0.001);
    EXPECT_NEAR(static_cast<double>(ReadAll(Folder / "gap.mkv").value_or(0)), 12 * 16000, 16);
}

TEST_F(SoundReading, ReadsTheTrackThatIsAskedFor) {
    Ffmpeg(Folder, ClickSound(4) + "-f lavfi -i anullsrc=r=48000:d=4 -map 1 -map 0 -c:a aac "
                                   "-disposition:a:0 0 -disposition:a:1 default two.mka");
    const auto clicks = [this](int track) -> std::optional<std::size_t> {
        const auto reader = SoundReader::Open(Folder / "two.mka", track);
        return reader == nullptr ? std::nullopt : std::optional(Clicks(*reader).size());
    };
    EXPECT_EQ(clicks(0), 2U);
    EXPECT_EQ(clicks(1), 0U);
    EXPECT_EQ(clicks(2), 2U);
    EXPECT_EQ(clicks(3), std::nullopt);
    EXPECT_EQ(clicks(-1), std::nullopt);
}

TEST_F(SoundReading, MixesAllChannels) {
    Ffmpeg(Folder, ClickSound(4) + "-af \"pan=5.1|FC=c0|FL=0*c0|FR=0*c0|LFE=0*c0|BL=0*c0|BR=0*c0\" "
                                   "-c:a ac3 -b:a 448k six.mka");
    const auto reader = SoundReader::Open(Folder / "six.mka", 0);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(Clicks(*reader).size(), 2U);
}

TEST_F(SoundReading, TakesWhatIsLeftOfATruncatedFile) {
    const auto whole = Made("a.mp3", "-c:a libmp3lame");
    const std::string bytes = FileText(whole);
    for (const double share : {0.0, 0.01, 0.3, 0.999}) {
        const auto kept = static_cast<std::size_t>(share * static_cast<double>(bytes.size()));
        PutFile(Folder / "torn.mp3", bytes.substr(0, kept));
        const auto samples = ReadAll(Folder / "torn.mp3");
        const double least = share >= 0.3 ? share * 5 * 16000 : 0;
        EXPECT_GE(static_cast<double>(samples.value_or(0)), least) << share;
    }
}

struct DamageRow {
    const char* name;
    const char* file;
    const char* coding;
};

class Damaged : public SoundReading, public testing::WithParamInterface<DamageRow> {};

TEST_P(Damaged, IsReadAsFarAsItGoes) {
    const std::string bytes = FileText(Made(GetParam().file, GetParam().coding));
    unsigned random = 1;
    const auto next = [&random](std::size_t below) {
        random = random * 1664525U + 1013904223U;
        return static_cast<std::size_t>(random >> 8U) % below;
    };
    for (int round = 0; round < 12; ++round) {
        std::string damaged = bytes;
        for (int i = 0; i < 1 << round % 8; ++i)
            damaged[next(damaged.size())] = static_cast<char>(next(256));
        if (round % 3 == 2)
            damaged.resize(next(damaged.size()));
        const auto file = Folder / ("damaged-" + std::string(GetParam().file));
        PutFile(file, damaged);
        const auto samples = ReadAll(file);
        EXPECT_LT(samples.value_or(0), 16000LL * 4 * 3600);
        (void)MediaFile::Read(file);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Damaged,
                         testing::Values(DamageRow{"mkv", "a.mkv", "-c:a libopus"},
                                         DamageRow{"mp4", "a.mp4", "-c:a aac"},
                                         DamageRow{"ts", "a.ts", "-c:a ac3"},
                                         DamageRow{"mpg", "a.mpg", "-c:a mp2"},
                                         DamageRow{"avi", "a.avi", "-c:a libmp3lame"},
                                         DamageRow{"asf", "a.asf", "-c:a wmav2"},
                                         DamageRow{"ogg", "a.ogg", "-c:a libvorbis"},
                                         DamageRow{"flac", "a.flac", "-c:a flac"},
                                         DamageRow{"wav", "a.wav", "-c:a pcm_s16le"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SoundReading, StopsAtOnceWhenAsked) {
    Ffmpeg(Folder, "-f lavfi -i anoisesrc=d=600:r=48000 -c:a flac long.flac");
    std::stop_source stop;
    const auto reader = SoundReader::Open(Folder / "long.flac", 0, stop.get_token());
    ASSERT_NE(reader, nullptr);
    SoundReader::Block block;
    ASSERT_TRUE(reader->Read(block));
    stop.request_stop();
    EXPECT_FALSE(reader->Read(block));
    EXPECT_EQ(SoundReader::Open(Folder / "long.flac", 0, stop.get_token()), nullptr);
    EXPECT_EQ(MediaFile::Read(Folder / "long.flac", stop.get_token()), std::nullopt);
}

} // namespace
