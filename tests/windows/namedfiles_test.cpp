#include "mainwindow/namedfiles.h"
#include "platform/paths.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class NamedFilesTest : public testing::Test {
  protected:
    QString Make(const char* name, const QByteArray& bytes) const {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    const QTemporaryDir folder;
    const QByteArray titles = "1\r\n00:00:01,000 --> 00:00:02,000\r\nHello\r\n\r\n";
    const QByteArray film = QByteArray("RIFF\0\0\0\0AVI ", 12);
};

TEST_F(NamedFilesTest, AreToldApartByContentInAnyOrder) {
    struct Row {
        const char* name;
        QByteArray bytes;
        bool subtitles;
    };
    const Row rows[] = {{"a.srt", titles, true},
                        {"b", titles, true},
                        {"c.txt", "{1}{25}Hello", true},
                        {"d.avi", titles, true},
                        {"e.sub", film, false},
                        {"f.avi", film, false},
                        {"g.mkv", "text of no format", false},
                        {"h.srt", "", true},
                        {"i.dat", "", false},
                        {"j.dat", "\r\n\r\n", false},
                        {"k.dat",
                         QByteArray("\xFF\xFE"
                                    "1\0\r\0\n\0",
                                    8),
                         true}};
    const QString other = folder.filePath("missing.avi");
    const QString text = folder.filePath("missing.srt");
    for (const Row& row : rows) {
        const QString file = Make(row.name, row.bytes);
        const QString& with = row.subtitles ? other : text;
        for (const QStringList& order : {QStringList{file, with}, QStringList{with, file}}) {
            const NamedFiles named = TellApart(order);
            EXPECT_EQ(named.subtitles, row.subtitles ? file : with) << row.name;
            EXPECT_EQ(named.media, row.subtitles ? with : file) << row.name;
        }
    }
}

TEST_F(NamedFilesTest, OfEachKindTheFirstIsTaken) {
    const NamedFiles named = TellApart({"a.srt", "b.srt", "a.avi", "c.avi"});
    EXPECT_EQ(named.subtitles, "a.srt");
    EXPECT_EQ(named.media, "a.avi");
    EXPECT_EQ(named.others, (QStringList{"b.srt", "c.avi"}));
    EXPECT_TRUE(TellApart({}).media.isEmpty());
}

TEST_F(NamedFilesTest, AFileThatIsNamedTwiceIsLeftOutOnceAtMost) {
    EXPECT_TRUE(TellApart({"a.srt", "a.avi", "a.srt"}).others.isEmpty());
    EXPECT_EQ(TellApart({"a.srt", "b.srt", "b.srt"}).others, QStringList{"b.srt"});
}

TEST(LeftOut, FilesAreNamedAsLongAsTheyAreFew) {
    const struct {
        QStringList others;
        const char* left;
    } rows[] = {{{"/films/b.srt"}, "“b.srt” was"},
                {{"b.srt", "c.avi"}, "“b.srt” and “c.avi” were"},
                {{"%1", "%2.avi"}, "“%1” and “%2.avi” were"},
                {{"b", "c", "d", "e"}, "“b”, “c”, “d” and “e” were"},
                {{"b", "c", "d", "e", "f", "g"}, "“b”, “c”, “d”, “e” and 2 more were"}};
    for (const auto& row : rows)
        EXPECT_EQ(LeftOutText(row.others).toStdString(),
                  "Only one film and one subtitle file are opened at a time: " +
                      std::string(row.left) + " left out.");
    EXPECT_EQ(LeftOutText({}), "");
}

#ifdef Q_OS_LINUX
TEST_F(NamedFilesTest, NamesThatAreNoTextAreToldApartToo) {
    Make("film", film);
    Make("titles", titles);
    const std::filesystem::path where = PathOf(folder.path());
    std::filesystem::rename(where / "film", where / "caf\xE9.avi");
    std::filesystem::rename(where / "titles", where / "caf\xE9.srt");
    const QString media = NameOf(where / "caf\xE9.avi");
    const QString subtitles = NameOf(where / "caf\xE9.srt");
    const NamedFiles named = TellApart({subtitles, media});
    EXPECT_EQ(named.media, media);
    EXPECT_EQ(named.subtitles, subtitles);
    EXPECT_EQ(SubtitlesBeside(media), subtitles);
    for (const QString& name : {media, subtitles})
        std::filesystem::remove(PathOf(name));
}
#endif

TEST_F(NamedFilesTest, AFilmsSubtitlesLieBesideIt) {
    const QString media = Make("my.film.avi", film);
    EXPECT_EQ(SubtitlesBeside(media), "");
    Make("my.srt", titles);
    Make("my.film.sub", film);
    EXPECT_EQ(SubtitlesBeside(media), "");
    const QString its = Make("my.film.srt", titles);
    EXPECT_EQ(SubtitlesBeside(media), its);
}

} // namespace
