#include "media/mediafile.h"

#include "media/soundreader.h"
#include "media/texttrackreader.h"
#include "tests/sound/filmmaking.h"

#include <gtest/gtest.h>

#include <cstring>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace {

constexpr const char* Titles = "1\n00:00:01,000 --> 00:00:02,500\nOne\n\n"
                               "2\n00:00:03,000 --> 00:00:04,000\n<i>Two</i>\nlines\n\n";

class Media : public testing::Test {
  public:
    const TestFolder Folder;
};

TEST_F(Media, IsThere) {
    EXPECT_TRUE(SoundAvailable());
}

TEST_F(Media, TellsWhatAFilmHolds) {
    PutFile(Folder / "t.srt", Titles);
    PutFile(Folder / "chapters.txt", ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=2000\n"
                                     "title=Begin\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=2000\n"
                                     "END=6000\ntitle=End\n");
    Ffmpeg(Folder, Pictures(6) + ClickSound(6) +
                       "-i t.srt -i chapters.txt -map 0:v -map 1:a -map 1:a -map 2 -map_metadata 3 "
                       "-c:v libx264 -preset ultrafast -c:a aac -c:s srt "
                       "-metadata:s:a:0 language=eng -metadata:s:a:1 language=ger "
                       "-metadata:s:a:1 title=Kommentar -metadata:s:s:0 language=fre "
                       "-metadata:s:s:0 title=Titres "
                       "-disposition:a:0 0 -disposition:a:1 default film.mkv");
    const auto film = MediaFile::Read(Folder / "film.mkv");
    ASSERT_TRUE(film);
    EXPECT_NEAR(film->length, 6, 0.05);
    EXPECT_EQ(film->firstTime, 0);
    EXPECT_NEAR(film->pictureRate.value_or(0), 25, 0.001);
    ASSERT_EQ(film->soundTracks.size(), 2U);
    EXPECT_EQ(film->soundTracks[0].language, "eng");
    EXPECT_EQ(film->soundTracks[0].name, "");
    EXPECT_EQ(film->soundTracks[0].codec, "aac");
    EXPECT_EQ(film->soundTracks[0].channels, 1);
    EXPECT_EQ(film->soundTracks[0].frequency, 48000);
    EXPECT_EQ(film->soundTracks[1].language, "ger");
    EXPECT_EQ(film->soundTracks[1].name, "Kommentar");
    EXPECT_TRUE(film->soundTracks[1].isDefault);
    EXPECT_EQ(film->PlayedTrack(), 2);
    ASSERT_EQ(film->textTracks.size(), 1U);
    EXPECT_EQ(film->textTracks[0].index, 3);
    EXPECT_EQ(film->textTracks[0].codec, "subrip");
    EXPECT_EQ(film->textTracks[0].kind, TextTrack::Kind::Text);
    EXPECT_EQ(film->textTracks[0].language, "fre");
    EXPECT_EQ(film->textTracks[0].name, "Titres");
    ASSERT_EQ(film->chapters.size(), 2U);
    EXPECT_EQ(film->chapters[1].name, "End");
    EXPECT_NEAR(film->chapters[1].start, 2, 0.001);
    EXPECT_NEAR(film->chapters[1].end, 6, 0.05);
}

TEST_F(Media, KnowsASilentFilm) {
    Ffmpeg(Folder, Pictures(2) + "-c:v mpeg2video v.mpg");
    const auto film = MediaFile::Read(Folder / "v.mpg");
    ASSERT_TRUE(film);
    EXPECT_TRUE(film->soundTracks.empty());
    EXPECT_EQ(film->PlayedTrack(), 0);
    EXPECT_EQ(SoundReader::Open(Folder / "v.mpg", 0), nullptr);
}

TEST_F(Media, CountsTimesFromTheFirstPicture) {
    Ffmpeg(Folder, "-itsoffset 0.7 " + Pictures(3) + ClickSound(3) +
                       "-map 0:v -map 1:a -c:v mpeg2video -c:a mp2 -output_ts_offset 100 a.ts");
    const auto film = MediaFile::Read(Folder / "a.ts");
    ASSERT_TRUE(film);
    EXPECT_NEAR(film->firstTime, 102.1, 0.1);
    EXPECT_NEAR(film->length, 3, 0.1);
}

struct TextRow {
    const char* name;
    const char* file;
    const char* coding;
    const char* codec;
    const char* second;
    bool header;
};

class TextIn : public Media, public testing::WithParamInterface<TextRow> {};

TEST_P(TextIn, IsReadPacketByPacket) {
    PutFile(Folder / "t.srt", Titles);
    Ffmpeg(Folder, Pictures(6) + "-i t.srt -map 0 -map 1 -c:v libx264 -preset ultrafast " +
                       std::string(GetParam().coding) + " " + GetParam().file);
    const auto film = MediaFile::Read(Folder / GetParam().file);
    ASSERT_TRUE(film);
    ASSERT_EQ(film->textTracks.size(), 1U);
    EXPECT_EQ(film->textTracks[0].codec, GetParam().codec);
    const auto reader = TextTrackReader::Open(Folder / GetParam().file, film->textTracks[0].index);
    ASSERT_NE(reader, nullptr);
    const int index = film->textTracks[0].index;
    EXPECT_EQ(reader->Codec(index), GetParam().codec);
    EXPECT_EQ(!reader->CodecPrivate(index).empty(), GetParam().header);
    std::vector<TextPacket> packets;
    for (TextPacket packet; reader->Read(packet);)
        if (packet.payload.size() > 2)
            packets.push_back(packet);
    ASSERT_EQ(packets.size(), 2U);
    EXPECT_NEAR(packets[0].start, 1, 0.001);
    EXPECT_NEAR(packets[0].end, 2.5, 0.001);
    EXPECT_NE(packets[0].payload.find("One"), std::string::npos);
    EXPECT_NEAR(packets[1].start, 3, 0.001);
    EXPECT_NEAR(packets[1].end, 4, 0.001);
    EXPECT_NE(packets[1].payload.find(GetParam().second), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TextIn,
    testing::Values(TextRow{"subrip", "a.mkv", "-c:s srt", "subrip", "<i>Two</i>", false},
                    TextRow{"ass", "b.mkv", "-c:s ass", "ass", "{\\i1}Two{\\i0}\\Nlines", true},
                    TextRow{"mov_text", "a.mp4", "-c:s mov_text", "mov_text", "Two", true},
                    TextRow{"webvtt", "c.mkv", "-c:s webvtt", "webvtt", "<i>Two</i>", false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Media, HasNoTextWhereThereIsNone) {
    Ffmpeg(Folder, Pictures(1) + "-c:v mpeg4 a.avi");
    for (const int index : {-1, 0, 1, 1000})
        EXPECT_EQ(TextTrackReader::Open(Folder / "a.avi", index), nullptr) << index;
}

struct RefusedRow {
    const char* name;
    const char* file;
    const char* content;
};

class Refused : public Media, public testing::WithParamInterface<RefusedRow> {};

/// A file that names another one must not lead there.
TEST_P(Refused, IsNoFilm) {
    Ffmpeg(Folder, ClickSound(2) + "other.wav");
    PutFile(Folder / GetParam().file, GetParam().content);
    EXPECT_EQ(MediaFile::Read(Folder / GetParam().file), std::nullopt);
    EXPECT_EQ(SoundReader::Open(Folder / GetParam().file, 0), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Refused,
    testing::Values(
        RefusedRow{"empty", "a.avi", ""}, RefusedRow{"text", "a.mp4", "nothing known\n"},
        RefusedRow{"playlist", "a.avi",
                   "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\nother.wav\n#EXT-X-ENDLIST\n"},
        RefusedRow{"list_of_the_network", "a.mov",
                   "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\nhttp://127.0.0.1:9/x.ts\n"},
        RefusedRow{"concatenation", "a.mkv", "ffconcat version 1.0\nfile other.wav\n"},
        RefusedRow{"session", "a.mpg",
                   "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\n"
                   "m=audio 9 RTP/AVP 0\n"},
        RefusedRow{"titles", "a.ts", "1\n00:00:01,000 --> 00:00:02,000\nText\n"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Media, IsOnlyReadFromOrdinaryFiles) {
    EXPECT_EQ(MediaFile::Read(Folder / "missing.avi"), std::nullopt);
    EXPECT_EQ(MediaFile::Read(Folder.Path()), std::nullopt);
    EXPECT_EQ(MediaFile::Read("http://127.0.0.1:9/a.avi"), std::nullopt);
#ifndef _WIN32
    ASSERT_EQ(mkfifo((Folder / "pipe.avi").c_str(), 0600), 0);
    EXPECT_EQ(MediaFile::Read(Folder / "pipe.avi"), std::nullopt);
    EXPECT_EQ(MediaFile::Read("/dev/zero"), std::nullopt);
#endif
}

TEST_F(Media, IsReadUnderAnyName) {
    for (const char* name : {"file:x.wav", "a b%20c.wav", "\xC3\xA4\xE2\x82\xAC.wav", "-x.wav"}) {
        Ffmpeg(Folder, ClickSound(1) + "plain.wav");
        const auto file =
            Folder / std::filesystem::path(std::u8string(name, name + std::strlen(name)));
        std::filesystem::rename(Folder / "plain.wav", file);
        EXPECT_TRUE(MediaFile::Read(file)) << name;
    }
}

} // namespace
