#include "tracks/filmtracks.h"

#include "cli/commandline.h"
#include "tests/sound/filmmaking.h"
#include "tracks/filmname.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace {

constexpr std::string_view SubRip = "1\n00:00:01,000 --> 00:00:02,500\nOne\n\n"
                                    "2\n00:00:03,000 --> 00:00:04,000\n<i>Two</i>\nlines\n\n";
constexpr std::string_view Script =
    "[Script Info]\nTitle: a script\nScriptType: v4.00+\n\n"
    "[V4+ Styles]\nFormat: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, "
    "OutlineColour, BackColour, Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, "
    "Angle, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\n"
    "Style: Default,Arial,16,&H00FFFFFF,&H000000FF,&H00000000,&H00000000,0,0,0,0,100,100,0,0,1,1,"
    "0,2,10,10,10,1\n"
    "Style: Sign,Arial,30,&H00FFFFFF,&H000000FF,&H00000000,&H00000000,0,0,0,0,100,100,0,0,1,1,0,8,"
    "10,10,10,1\n\n"
    "[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:03.00,0:00:04.00,Default,,0,0,0,,Two, and\\Nmore\n"
    "Dialogue: 5,0:00:01.00,0:00:02.50,Sign,Bob,1,2,3,Banner;5,{\\pos(10,20)}One\n";
constexpr std::string_view Cues =
    "WEBVTT\r\n\r\nfirst\r\n00:00:01.000 --> 00:00:02.500 line:10%\r\n"
    "One\r\n\r\n00:00:03.000 --> 00:00:04.000\r\n<i>Two</i>\r\nlines\r\n";

class Tracks : public testing::Test {
  public:
    Tracks() {
        PutFile(Folder / "t.srt", SubRip);
        PutFile(Folder / "t.ass", Script);
        PutFile(Folder / "t.vtt", Cues);
    }

    /// A film of six seconds with these words for its text tracks.
    void Make(const std::string& inputs, const std::string& words) const {
        Ffmpeg(Folder, Pictures(6) + inputs + " -map 0:v -c:v libx264 -preset ultrafast " + words);
    }
    /// The file that a track's titles give.
    std::string Saved(const char* film, std::size_t track) const {
        const FilmTracks tracks(Folder / film);
        tracks.Wait();
        SUBTITLES titles;
        FileStyle style;
        EXPECT_TRUE(tracks.Load(track, "windows-1252", titles, style));
        EXPECT_TRUE(titles.UndoEnabled());
        std::string file;
        WriteFile(*tracks.Tracks()[track].format, titles, 25, style, file);
        return file;
    }
    std::vector<TestTitle> Titles(const char* film, std::size_t track) const {
        const FilmTracks tracks(Folder / film);
        tracks.Wait();
        SUBTITLES titles;
        FileStyle style;
        EXPECT_TRUE(tracks.Load(track, "windows-1252", titles, style));
        return TitlesOf(titles);
    }

    const TestFolder Folder;
};

const std::vector<TestTitle> Both{{1, 2.5, "One"}, {3, 4, "<i>Two</i>\r\nlines"}};

struct KindRow {
    const char* name;
    const char* file;
    const char* inputs;
    const char* words;
    const char* kind;
    const char* format;
};

class Kinds : public Tracks, public testing::WithParamInterface<KindRow> {};

TEST_P(Kinds, AreReadAsTheirOwnFormat) {
    const KindRow& row = GetParam();
    Make(row.inputs, std::string("-map 1 ") + row.words + " " + row.file);
    const FilmTracks tracks(Folder / row.file);
    tracks.Wait();
    ASSERT_EQ(tracks.Now(), FilmTracks::State::Complete);
    EXPECT_EQ(tracks.Done(), 1);
    ASSERT_EQ(tracks.Tracks().size(), 1U);
    const FilmTracks::Track track = tracks.Tracks().front();
    EXPECT_EQ(track.kind, row.kind);
    EXPECT_EQ(track.titles, 2);
    ASSERT_NE(track.format, nullptr);
    EXPECT_STREQ(track.format->name, row.format);
    std::vector<TestTitle> titles = Titles(row.file, 0);
    for (TestTitle& title : titles) {
        title.start = std::round(title.start * 1000) / 1000;
        title.end = std::round(title.end * 1000) / 1000;
    }
    EXPECT_EQ(titles.size(), Both.size());
    EXPECT_EQ(titles.front(), Both.front());
    EXPECT_NE(titles.back().text.find("Two"), std::string::npos);
    EXPECT_NE(titles.back().text.find("\r\nlines"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Kinds,
    testing::Values(KindRow{"subrip", "a.mkv", "-i t.srt", "-c:s srt", "SubRip", "SubRip"},
                    KindRow{"ass", "b.mkv", "-i t.srt", "-c:s ass", "SubStation Alpha",
                            "Advanced SubStation Alpha"},
                    KindRow{"webvtt", "c.webm", "-i t.vtt", "-c:v libvpx -c:s webvtt", "WebVTT",
                            "WebVTT"},
                    KindRow{"mov_text", "d.mp4", "-i t.srt", "-c:s mov_text", "MP4 text", "SubRip"},
                    KindRow{"mov", "e.mov", "-i t.srt", "-c:s mov_text", "MP4 text", "SubRip"},
                    KindRow{"ttml", "f.mp4", "-i t.srt", "-c:s ttml", "Timed Text", "Timed Text"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Tracks, KeepTheStylesOfMovText) {
    Make("-i t.srt", "-map 1 -c:s mov_text a.mp4");
    EXPECT_EQ(Titles("a.mp4", 0), Both);
}

TEST_F(Tracks, GiveTheScriptThatWasPutIn) {
    Make("-i t.ass", "-map 1 -c:s copy a.mkv");
    EXPECT_EQ(Saved("a.mkv", 0), Script);
}

TEST_F(Tracks, GiveTheCuesThatWerePutIn) {
    Make("-i t.vtt", "-map 1 -c:v libvpx -c:s copy a.webm");
    EXPECT_EQ(Saved("a.webm", 0), Cues);
}

TEST_F(Tracks, CountOnTheFilmsClock) {
    Make("-i t.srt", "-map 1 -c:s mov_text -output_ts_offset 10 a.mp4");
    Ffmpeg(Folder, Pictures(6) + "-itsoffset 1 -i t.srt -map 0 -map 1 -c:v libx264 -preset "
                                 "ultrafast -c:s srt late.mkv");
    EXPECT_EQ(Titles("a.mp4", 0), Both);
    EXPECT_EQ(Titles("late.mkv", 0).front(), (TestTitle{2, 3.5, "One"}));
}

TEST_F(Tracks, AreListedWithPicturesAmongThem) {
    // One PGS picture that shows nothing, from second 1 to 3.
    const auto segment = [](std::uint32_t second, char type, const std::string& body) {
        std::string bytes = "PG";
        const std::uint32_t stamp = second * 90000;
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes += static_cast<char>(stamp >> shift);
        bytes += std::string(4, '\0') + type;
        bytes += static_cast<char>(body.size() >> 8);
        return bytes + static_cast<char>(body.size()) + body;
    };
    const std::string shown("\x00\x60\x00\x40\x10\x00\x00\x80\x00\x00\x00", 11);
    PutFile(Folder / "t.sup", segment(1, '\x16', shown) + segment(1, '\x80', "") +
                                  segment(3, '\x16', shown) + segment(3, '\x80', ""));
    Make("-i t.srt -i t.sup -i t.ass",
         "-map 1 -map 2 -map 3 -c:s:0 srt -c:s:1 copy -c:s:2 copy -metadata:s:s:0 language=eng "
         "-metadata:s:s:2 language=ger -metadata:s:s:2 title=Schilder -disposition:s:2 forced "
         "a.mkv");
    const FilmTracks tracks(Folder / "a.mkv");
    tracks.Wait();
    const std::vector<FilmTracks::Track> found = tracks.Tracks();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].about.language, "eng");
    EXPECT_EQ(found[0].titles, 2);
    EXPECT_EQ(found[1].kind, "PGS pictures");
    EXPECT_EQ(found[1].format, nullptr);
    EXPECT_EQ(found[2].about.name, "Schilder");
    EXPECT_TRUE(found[2].about.isForced);
    SUBTITLES titles;
    titles.Add(1, 2, "as it was");
    FileStyle style;
    for (const std::size_t track : {1U, 3U, 1000U})
        EXPECT_FALSE(tracks.Load(track, "", titles, style)) << track;
    EXPECT_EQ(titles.Text(1), "as it was");
}

TEST_F(Tracks, AreNoneWhereThereIsNoText) {
    Make("", "a.mkv");
    const FilmTracks tracks(Folder / "a.mkv");
    tracks.Wait();
    EXPECT_EQ(tracks.Now(), FilmTracks::State::Complete);
    EXPECT_TRUE(tracks.Tracks().empty());
}

TEST_F(Tracks, AreNoneInWhatIsNoFilm) {
    for (const char* name : {"t.srt", "missing.mkv", ""}) {
        const FilmTracks tracks(Folder / name);
        tracks.Wait();
        EXPECT_EQ(tracks.Now(), FilmTracks::State::NoFilm) << name;
    }
}

TEST_F(Tracks, EndAtOnceWhenNobodyWantsThem) {
    Make("-i t.srt", "-map 1 -c:s srt a.mkv");
    for (int i = 0; i < 20; ++i)
        const FilmTracks given(Folder / "a.mkv");
}

// --- WebVTT as other programs put it into Matroska: the settings and the identifier beside the
// cue, the header in front, times within the words counted from its start.

std::string Element(std::uint32_t id, const std::string& body) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        if ((id >> shift) != 0)
            bytes += static_cast<char>(id >> shift);
    bytes += '\x08';
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(static_cast<std::uint32_t>(body.size()) >> shift);
    return bytes + body;
}
std::string Number(std::uint32_t id, std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return Element(id, bytes);
}

TEST_F(Tracks, KnowCuesWithTheirSettingsBeside) {
    const std::string head =
        Element(0x1A45DFA3, Element(0x4282, "matroska") + Number(0x4287, 4) + Number(0x4285, 2));
    const std::string track = Element(0xAE, Number(0xD7, 1) + Number(0x73C5, 1) + Number(0x83, 17) +
                                                Element(0x86, "S_TEXT/WEBVTT") +
                                                Element(0x63A2, "WEBVTT\n\nNOTE of the head\n"));
    const std::string block =
        Element(0xA1, std::string("\x81\x03\xE8\x00", 4) + "One <00:00:00.500>two") +
        Number(0x9B, 1500) +
        Element(0x75A1, Element(0xA6, Number(0xEE, 1) + Element(0xA5, "line:10%\nfirst\n")));
    const std::string segment = Element(
        0x18538067, Element(0x1549A966, Number(0x2AD7B1, 1000000)) + Element(0x1654AE6B, track) +
                        Element(0x1F43B675, Number(0xE7, 0) + Element(0xA0, block)));
    PutFile(Folder / "other.mkv", head + segment);
    EXPECT_EQ(
        Saved("other.mkv", 0),
        "WEBVTT\n\nNOTE of the head\r\n\r\nfirst\r\n00:00:01.000 --> 00:00:02.500 line:10%\r\n"
        "One <00:00:01.500>two\r\n");
}

// --- The command line

struct Ran {
    ExitCode code;
    std::string out;
    std::string err;
};

Ran RunWords(const std::vector<std::string>& words) {
    std::ostringstream out;
    std::ostringstream err;
    const ExitCode code = RunCommandLine(words, out, err);
    return {code, out.str(), err.str()};
}

TEST_F(Tracks, AreListedOnTheCommandLine) {
    Make("-i t.srt -i t.ass", "-map 1 -map 2 -c:s:0 srt -c:s:1 copy -metadata:s:s:0 language=eng "
                              "-metadata:s:s:1 \"title=a\tb\" a.mkv");
    const Ran ran = RunWords({"tracks", (Folder / "a.mkv").string()});
    EXPECT_EQ(ran.code, ExitCode::Done);
    EXPECT_EQ(ran.out, "1\teng\tSubRip\t2\t\n2\t\tSubStation Alpha\t2\ta b\n");
    EXPECT_EQ(ran.err, "");
}

TEST_F(Tracks, AreConvertedOnTheCommandLine) {
    Make("-i t.srt -i t.ass", "-map 1 -map 2 -c:s:0 srt -c:s:1 copy a.mkv");
    const std::string film = (Folder / "a.mkv").string();
    const std::string before = FileText(Folder / "a.mkv");
    EXPECT_EQ(RunWords({"convert", "--track", "2", film, (Folder / "o.ass").string()}).code,
              ExitCode::Done);
    EXPECT_EQ(FileText(Folder / "o.ass"), Script);
    EXPECT_EQ(
        RunWords({"convert", "--track=1", "--styles", film, (Folder / "o.srt").string()}).code,
        ExitCode::Done);
    EXPECT_EQ(LoadText("o.srt", FileText(Folder / "o.srt")).Titles(), Both);
    EXPECT_EQ(FileText(Folder / "a.mkv"), before);
}

struct FaultRow {
    std::vector<std::string> words;
    const char* file;
    ExitCode code;
    const char* fault;
};

TEST_F(Tracks, AreMissedOnTheCommandLine) {
    Make("-i t.srt", "-map 1 -c:s srt a.mkv");
    for (const FaultRow& row :
         {FaultRow{{"convert", "--track", "2"}, "a.mkv", ExitCode::Failed, "no such track"},
          FaultRow{
              {"convert", "--track", "0"}, "a.mkv", ExitCode::WrongArguments, "makes no sense"},
          FaultRow{
              {"convert", "--track", "x"}, "a.mkv", ExitCode::WrongArguments, "makes no sense"},
          FaultRow{{"convert"}, "a.mkv", ExitCode::Failed, "convert --track N takes one"},
          FaultRow{{"shift", "--by", "1"}, "a.mkv", ExitCode::Failed, "is a film"},
          FaultRow{{"convert", "--track", "1"}, "t.srt", ExitCode::Failed, "no film that can be"},
          FaultRow{{"convert", "--track", "1"}, "no.mkv", ExitCode::Failed, "cannot be opened"}}) {
        std::vector<std::string> words = row.words;
        words.push_back((Folder / row.file).string());
        words.push_back((Folder / "o.srt").string());
        const Ran ran = RunWords(words);
        EXPECT_EQ(ran.code, row.code) << row.fault;
        EXPECT_NE(ran.err.find(row.fault), std::string::npos) << ran.err;
        EXPECT_FALSE(std::filesystem::exists(Folder / "o.srt")) << row.fault;
    }
    EXPECT_EQ(RunWords({"tracks", (Folder / "t.srt").string()}).code, ExitCode::Failed);
    EXPECT_EQ(RunWords({"tracks"}).code, ExitCode::WrongArguments);
}

TEST(FilmName, IsToldByItsEnd) {
    for (const char* name : {"a.mkv", "A.MKV", "/x.y/a.mp4", "a.b.ts", ".avi"})
        EXPECT_TRUE(IsFilmName(name)) << name;
    for (const char* name : {"", "mkv", "a.srt", "a.mkv.srt", "a.mkv "})
        EXPECT_FALSE(IsFilmName(name)) << name;
}

} // namespace
