#include "platform/paths.h"
#include "tests/windows/screening.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>

#include <gtest/gtest.h>

#include <string>

namespace {

QByteArray Read(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

QString Write(const QString& name, const QByteArray& bytes) {
    const QString path = InFilmFolder(name);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return path;
}

/// A web server that only counts who comes.
class Listener {
  public:
    Listener() {
        EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
        QObject::connect(&server, &QTcpServer::newConnection, [this] { ++guests; });
    }
    QByteArray Address(const char* name) const {
        return "http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/" + name;
    }

    QTcpServer server;
    int guests = 0;
};

#ifdef Q_OS_LINUX
TEST(PlayerFiles, AFilmWhoseNameIsNoText) {
    const std::filesystem::path film = PathOf(InFilmFolder("")) / "caf\xE9.avi";
    std::filesystem::copy_file(PathOf(MakeFilm({})), film,
                               std::filesystem::copy_options::overwrite_existing);
    Screening show;
    show.player->FileName(NameOf(film));
    EXPECT_NE(show.player->ReadyState(), 0);
    EXPECT_EQ(PathOf(show.player->FileName()), film);
}
#endif

class PlayerTakes : public testing::TestWithParam<const char*> {};

TEST_P(PlayerTakes, AFileOfThisKind) {
    const Film film = FilmIn(GetParam());
    const QString path = MakeFilm(film);
    Screening show;
    EXPECT_EQ(show.player->ReadyState(), 0);
    const QSignalSpy states(show.player.get(), &Player::PlayStateChange);
    show.player->FileName(path);
    EXPECT_NE(show.player->ReadyState(), 0);
    EXPECT_EQ(show.player->FileName(), path);
    EXPECT_EQ(show.player->State(), Player::Stopped);
    EXPECT_EQ(states.count(), 0);
    EXPECT_EQ(show.player->CurrentPosition(), 0);
    EXPECT_NEAR(show.player->Length(), film.Length(), 0.15);
    EXPECT_EQ(show.player->SelectionStart(), -1);
    EXPECT_EQ(show.player->SelectionEnd(), show.player->Length());
    EXPECT_NEAR(show.player->PictureRate(), film.HasPicture() ? film.rate : 0, 0.01);
    if (film.HasPicture())
        EXPECT_TRUE(show.Shows(0));
    else
        EXPECT_FALSE(show.player->DrawPicture(show.screen));
}

INSTANTIATE_TEST_SUITE_P(Containers, PlayerTakes,
                         testing::Values("avi", "mpg", "asf", "mov", "wav", "mp3", "mkv", "mp4",
                                         "webm", "ts", "m2ts", "vob", "ogm", "flv", "wmv", "flac",
                                         "m4a", "aac", "opus", "ogg", "wma"),
                         [](const auto& row) { return std::string(row.param); });

/// The bars beside the picture too.
TEST(PlayerFiles, APictureIsOpaque) {
    Screening show{Film()};
    show.screen.fill(Qt::transparent);
    ASSERT_TRUE(show.Shows(0));
    constexpr int PixelBytes = 4;
    constexpr int Alpha = QSysInfo::ByteOrder == QSysInfo::LittleEndian ? 3 : 0;
    int transparent = 0;
    for (int y = 0; y < show.screen.height(); ++y)
        for (int x = 0; x < show.screen.width(); ++x)
            transparent += show.screen.constScanLine(y)[x * PixelBytes + Alpha] == 0xff ? 0 : 1;
    EXPECT_EQ(transparent, 0);
}

TEST(PlayerFiles, AFilmWithoutSoundIsTaken) {
    Film film;
    film.sound = false;
    const Screening show(film);
    EXPECT_NE(show.player->ReadyState(), 0);
    EXPECT_TRUE(show.player->AudioTracks().isEmpty());
    EXPECT_EQ(show.player->AudioTrack(), -1);
}

TEST(PlayerFiles, TheRateIsTheFilmsOwn) {
    for (const double rate : {24000.0 / 1001, 24.0, 25.0, 30000.0 / 1001, 50.0}) {
        for (const char* container : {"avi", "mkv", "mp4", "ts"}) {
            Film film = FilmIn(container);
            film.pictures = 50;
            film.rate = rate;
            const Screening show(film);
            EXPECT_NEAR(show.player->PictureRate(), rate, rate / 10000) << container;
        }
    }
    Screening show((Film()));
    show.player->FileName("");
    EXPECT_EQ(show.player->PictureRate(), 0);
}

TEST(PlayerFiles, ARelativeNameIsTaken) {
    const QString path = MakeFilm(Film());
    Screening show;
    show.player->FileName(QDir::current().relativeFilePath(path));
    EXPECT_NE(show.player->ReadyState(), 0);
}

TEST(PlayerFiles, ANameIsTakenToTheLetter) {
    const QString path = InFilmFolder(QStringLiteral("Übung %20 [1] #&'\"$(x).avi"));
    ASSERT_TRUE(QFile::copy(MakeFilm(Film()), path));
    Screening show;
    show.player->FileName(path);
    EXPECT_NE(show.player->ReadyState(), 0);
}

struct Refused {
    const char* what;
    const char* name;
    QByteArray (*bytes)(const QByteArray& address);
};

class PlayerRefuses : public testing::TestWithParam<Refused> {};

TEST_P(PlayerRefuses, AFileThatIsNoMediaWhateverItsName) {
    Listener listener;
    const QString path =
        Write(QString::fromUtf8(GetParam().name), GetParam().bytes(listener.Address("film.avi")));
    Screening show;
    show.player->FileName(path);
    EXPECT_EQ(show.player->ReadyState(), 0);
    EXPECT_EQ(show.player->Length(), 0);
    EXPECT_FALSE(show.player->DrawPicture(show.screen));
    show.player->Play();
    EXPECT_EQ(show.player->State(), Player::Stopped);
    show.player->CurrentPosition(1);
    EXPECT_EQ(show.player->CurrentPosition(), 0);
    QTest::qWait(20);
    EXPECT_EQ(listener.guests, 0);
    // It takes the next good one.
    show.player->FileName(MakeFilm(Film()));
    EXPECT_NE(show.player->ReadyState(), 0);
}

QByteArray Neighbour() {
    return QFile::encodeName(MakeFilm(Film()));
}

const Refused RefusedFiles[] = {
    {"Nothing", "empty.avi",
     [](const QByteArray&) {
         return QByteArray();
     }},
    {"Text", "text.avi",
     [](const QByteArray&) {
         return QByteArray("1\n00:00:01,000 --> \nHi\n");
     }},
    {"HeadAlone", "head.avi",
     [](const QByteArray&) {
         return Read(MakeFilm(Film())).left(64);
     }},
    {"HeadOfMov", "head.mov",
     [](const QByteArray&) {
         return Read(MakeFilm(FilmIn("mov"))).left(2000);
     }},
    {"Zeros", "zeros.mpg",
     [](const QByteArray&) {
         return QByteArray(5000, '\0');
     }},
    {"PlaylistOfANeighbour", "list.avi",
     [](const QByteArray&) {
         return "#EXTM3U\n#EXTINF:4,\n" + Neighbour() + "\n";
     }},
    {"PlaylistOfTheNetwork", "net.m3u",
     [](const QByteArray& address) {
         return "#EXTM3U\n" + address + "\n";
     }},
    {"LiveStreamList", "hls.mov",
     [](const QByteArray& address) {
         return "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:4\n#EXTINF:4,\n" + address +
                "\n#EXT-X-ENDLIST\n";
     }},
    {"ListOfParts", "concat.avi",
     [](const QByteArray&) {
         return "ffconcat version 1.0\nfile '" + Neighbour() + "'\n";
     }},
    {"SessionDescription", "session.mov",
     [](const QByteArray&) {
         return QByteArray("v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=x\r\nc=IN IP4 127.0.0.1\r\n"
                           "t=0 0\r\nm=video 5004 RTP/AVP 96\r\na=rtpmap:96 H264/90000\r\n");
     }},
    {"PlsList", "list.pls",
     [](const QByteArray& address) {
         return "[playlist]\nNumberOfEntries=1\nFile1=" + address;
     }},
    {"EditList", "edl.avi",
     [](const QByteArray&) {
         return "# mpv EDL v0\n" + Neighbour() + ",0,1\n";
     }},
    {"ReferenceMovie", "ref.asx",
     [](const QByteArray& address) {
         return "<asx version=\"3.0\"><entry><ref href=\"" + address + "\"/></entry></asx>";
     }},
    {"WindowsLink", "link.url",
     [](const QByteArray& address) {
         return "[InternetShortcut]\nURL=" + address + "\n";
     }},
    {"DesktopLink", "link.desktop",
     [](const QByteArray& address) {
         return "[Desktop Entry]\nType=Link\nURL=" + address + "\n";
     }},
    {"Script", "script.lua",
     [](const QByteArray&) {
         return QByteArray("os.exit(1)\n");
     }},
    {"Picture", "picture.avi",
     [](const QByteArray&) {
         return QByteArray("P6\n2 2\n255\n............");
     }},
};

INSTANTIATE_TEST_SUITE_P(Files, PlayerRefuses, testing::ValuesIn(RefusedFiles),
                         [](const auto& row) { return std::string(row.param.what); });

class PlayerRefusesName : public testing::TestWithParam<const char*> {};

TEST_P(PlayerRefusesName, ThatIsNoFile) {
    const Listener listener;
    Screening show;
    const QSignalSpy states(show.player.get(), &Player::PlayStateChange);
    show.player->FileName(QString::fromUtf8(GetParam()));
    EXPECT_EQ(show.player->ReadyState(), 0);
    EXPECT_EQ(show.player->FileName(), QString::fromUtf8(GetParam()));
    EXPECT_EQ(states.count(), 0);
}

INSTANTIATE_TEST_SUITE_P(Names, PlayerRefusesName,
                         testing::Values("", "/nowhere/film.avi", "/", "/dev/zero", "/tmp/*.avi",
                                         "http://127.0.0.1:9/film.avi", "file:///tmp/film.avi",
                                         "av://lavfi:testsrc", "edl://film.avi", "-", "fd://0"));

TEST(PlayerFiles, ATruncatedFilmPlaysAsFarAsItGoes) {
    Film film;
    film.pictures = 150;
    const QByteArray whole = Read(MakeFilm(film));
    Screening show;
    show.player->FileName(Write("cut.avi", whole.left(whole.size() / 2)));
    ASSERT_NE(show.player->ReadyState(), 0);
    show.player->Rate(2);
    show.player->CurrentPosition(1);
    EXPECT_TRUE(show.Shows(25));
    show.player->Play();
    EXPECT_TRUE(show.Reaches(Player::Stopped));
    EXPECT_EQ(show.player->CurrentPosition(), 0);
}

TEST(PlayerFiles, ABadNameAfterAGoodOneForgetsTheGoodOne) {
    Screening show((Film()));
    show.player->SelectionStart(1);
    show.player->SelectionEnd(2);
    show.player->CurrentPosition(1.5);
    show.player->Play();
    QSignalSpy states(show.player.get(), &Player::PlayStateChange);
    QSignalSpy ready(show.player.get(), &Player::ReadyStateChange);
    show.player->FileName("");
    EXPECT_EQ(show.player->ReadyState(), 0);
    EXPECT_EQ(show.player->Length(), 0);
    EXPECT_EQ(show.player->CurrentPosition(), 0);
    EXPECT_EQ(show.player->SelectionStart(), -1);
    EXPECT_EQ(show.player->SelectionEnd(), 0);
    ASSERT_EQ(states.count(), 1);
    EXPECT_EQ(states[0], (QVariantList{2, 0}));
    ASSERT_EQ(ready.count(), 1);
    EXPECT_EQ(ready[0], QVariantList{0});
    QTest::qWait(50);
    EXPECT_EQ(states.count(), 1);
}

TEST(PlayerFiles, AnotherFilmReplacesTheOneThatPlays) {
    Screening show((Film()));
    show.player->CurrentPosition(2);
    show.player->Play();
    Film other;
    other.container = "mov";
    other.pictures = 50;
    show.player->FileName(MakeFilm(other));
    EXPECT_NE(show.player->ReadyState(), 0);
    EXPECT_EQ(show.player->State(), Player::Stopped);
    EXPECT_EQ(show.player->CurrentPosition(), 0);
    EXPECT_NEAR(show.player->Length(), 2, 0.1);
    EXPECT_TRUE(show.Shows(0));
    QTest::qWait(100);
    EXPECT_EQ(show.player->CurrentPosition(), 0);
    EXPECT_EQ(show.Number(), 0);
}

TEST(PlayerFiles, ManyNamesInARowEndOnTheLast) {
    Film other;
    other.pictures = 50;
    Screening show;
    for (int i = 0; i < 10; ++i) {
        show.player->FileName(MakeFilm(Film()));
        show.player->FileName("");
        show.player->FileName(MakeFilm(FilmIn("mp3")));
    }
    show.player->FileName(MakeFilm(other));
    EXPECT_NE(show.player->ReadyState(), 0);
    EXPECT_NEAR(show.player->Length(), 2, 0.1);
    EXPECT_TRUE(show.Shows(0));
}

TEST(PlayerFiles, AConfigurationInItsWayIsIgnored) {
    const QString config = QFile::decodeName(qgetenv("XDG_CONFIG_HOME")) + "/mpv";
    const QString mark = InFilmFolder("mark");
    ASSERT_TRUE(QDir().mkpath(config + "/scripts"));
    QFile settings(config + "/mpv.conf");
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write("start=2\nspeed=2\nvo=null\n");
    settings.close();
    QFile script(config + "/scripts/mark.lua");
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("io.open('" + QFile::encodeName(mark) + "', 'w'):write('ran')\n");
    script.close();
    const QString film = InFilmFolder("configured.avi");
    ASSERT_TRUE(QFile::copy(MakeFilm(Film()), film));
    Write("configured.avi.conf", "start=2\nvo=null\n");
    Write("configured.srt", "1\n00:00:00,000 --> 00:00:09,000\nHi\n");
    qputenv("MPV_HOME", QFile::encodeName(config));
    Screening show;
    show.player->FileName(film);
    qunsetenv("MPV_HOME");
    QDir(config).removeRecursively();
    EXPECT_NE(show.player->ReadyState(), 0);
    EXPECT_TRUE(show.Shows(0));
    EXPECT_FALSE(QFile::exists(mark));
}

TEST(PlayerFiles, AnotherDecimalMarkIsNoHindrance) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8"})
        std::setlocale(LC_NUMERIC, locale);
    Screening show((Film()));
    show.player->CurrentPosition(1.25);
    EXPECT_TRUE(show.Shows(31));
    std::setlocale(LC_NUMERIC, before.c_str());
}

} // namespace
