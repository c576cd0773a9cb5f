#include "app/openmark.h"

#include "platform/filelock.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

class OpenMarkTest : public testing::Test {
  protected:
    OpenMarkTest() {
        QDir().mkpath(state);
        for (const char* name : {"film.srt", "other.srt"})
            EXPECT_TRUE(QFile(In(name)).open(QIODevice::WriteOnly));
    }

    QString In(const char* name) const { return folder.filePath(name); }
    bool Set(const QString& file) { return OpenMark::IsSetElsewhere(window, file, state); }
    QStringList Marks() const { return QDir(state).entryList(QDir::Files); }

    /// As a load does it.
    static void Open(Document& document, const QString& file) {
        document.SubtitleFile = file.toStdString();
        document.Saved();
    }

    const QTemporaryDir folder;
    const QString state = folder.filePath("state");
    QWidget window;
};

TEST_F(OpenMarkTest, IsSetAsLongAsTheFileIsOpen) {
    EXPECT_FALSE(Set(In("film.srt")));
    {
        Document document;
        const OpenMark mark(document, window, state);
        EXPECT_FALSE(Set(In("film.srt")));
        Open(document, In("film.srt"));
        EXPECT_TRUE(Set(In("film.srt")));
        EXPECT_FALSE(Set(In("other.srt")));
        Open(document, In("other.srt"));
        EXPECT_FALSE(Set(In("film.srt")));
        EXPECT_TRUE(Set(In("other.srt")));
    }
    EXPECT_FALSE(Set(In("other.srt")));
    EXPECT_EQ(Marks(), QStringList());
}

TEST_F(OpenMarkTest, FindsTheFileByAnyPath) {
    Document document;
    const OpenMark mark(document, window, state);
    Open(document, In("film.srt"));
    ASSERT_TRUE(QFile::link(In("film.srt"), In("link.srt")));
    EXPECT_TRUE(Set(In("link.srt")));
    EXPECT_TRUE(Set(folder.path() + "/./state/../film.srt"));
}

TEST_F(OpenMarkTest, OfAProgramThatWasKilledIsTidiedAway) {
    {
        Document document;
        const OpenMark mark(document, window, state);
        Open(document, In("film.srt"));
        ASSERT_EQ(Marks().size(), 1);
        QFile::copy(state + '/' + Marks().first(), In("left"));
    }
    const QString left = state + "/1234.open";
    ASSERT_TRUE(QFile::copy(In("left"), left));
    EXPECT_FALSE(FileLock::HeldElsewhere(left));
    EXPECT_FALSE(Set(In("film.srt")));
    EXPECT_EQ(Marks(), QStringList());
}

TEST_F(OpenMarkTest, MissingFilesAndFoldersAreNoTrouble) {
    Document document;
    const OpenMark mark(document, window, In("nowhere"));
    Open(document, In("film.srt"));
    Open(document, In("missing.srt"));
    Open(document, {});
    EXPECT_FALSE(OpenMark::IsSetElsewhere(window, In("film.srt"), In("nowhere")));
    EXPECT_FALSE(Set(In("missing.srt")));
}

} // namespace
