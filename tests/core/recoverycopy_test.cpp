#include "formats/recoverycopy.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

RecoveryNotes Notes() {
    RecoveryNotes notes;
    notes.mediaFile = "/films/Stra\xC3\x9F"
                      "e.avi";
    notes.subtitleFile = "/films/a.smi";
    notes.frameRate = 23.976;
    notes.style = {
        FileStyle::Encoding::Utf16BigEndian, true, true, "<SAMI>\r\n", "ENCC", "</SAMI>"};
    return notes;
}

SUBTITLES Titles() {
    SUBTITLES titles;
    titles.Add(0.1 + 0.2, 1.0 / 3, "one\r\n<i>two</i>");
    titles.Add(-5, std::numeric_limits<double>::infinity(), "");
    titles.Add(1e-300, 7, std::string("a\0b", 3));
    titles.UndoEnabled(true);
    return titles;
}

void ExpectSame(const SUBTITLES& a, const SUBTITLES& b) {
    ASSERT_EQ(a.Count(), b.Count());
    for (std::int32_t i = 1; i <= a.Count(); ++i) {
        EXPECT_EQ(a.StartTime(i), b.StartTime(i));
        EXPECT_EQ(a.EndTime(i), b.EndTime(i));
        EXPECT_EQ(a.Text(i), b.Text(i));
    }
}

TEST(RecoveryCopy, ComesBackExactly) {
    const SUBTITLES titles = Titles();
    const RecoveryStamp stamp{1700000000, true};
    const auto document = ReadRecoveryCopy(SealRecoveryCopy({titles, Notes()}, stamp));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->stamp, stamp);
    EXPECT_EQ(document->notes, Notes());
    ExpectSame(document->titles, titles);
    EXPECT_TRUE(document->titles.UndoEnabled());
    EXPECT_EQ(document->titles.UndoCount(), 0);
}

TEST(RecoveryCopy, AnEmptyDocumentComesBack) {
    const auto document = ReadRecoveryCopy(SealRecoveryCopy({SUBTITLES(), RecoveryNotes()}, {}));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->titles.Count(), 0);
    EXPECT_EQ(document->notes, RecoveryNotes());
}

TEST(RecoveryCopy, BringsItsUndoHistory) {
    SUBTITLES titles = Titles();
    titles.Text(1, "changed");
    titles.Delete(2);
    titles.Insert(1, 0, 1, "new");
    for (int i = 0; i < 120; ++i)
        titles.SetTimes(1, i, i + 1);
    auto document = ReadRecoveryCopy(SealRecoveryCopy({titles, Notes()}, {}));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->titles.UndoCount(), 100);
    while (titles.UndoCount() > 0) {
        EXPECT_EQ(document->titles.Undo(), titles.Undo());
        ExpectSame(document->titles, titles);
    }
    EXPECT_EQ(document->titles.Undo(), 0);
}

TEST(RecoveryCopy, TornCopiesAreRejected) {
    const std::string copy = SealRecoveryCopy({Titles(), Notes()}, {5, false});
    for (std::size_t length = 0; length < copy.size(); ++length)
        EXPECT_FALSE(ReadRecoveryCopy(copy.substr(0, length))) << length;
    EXPECT_FALSE(ReadRecoveryCopy(copy + '\0'));
    for (std::size_t zeroed = 0; zeroed < copy.size(); ++zeroed) {
        const std::string torn = copy.substr(0, zeroed) + std::string(copy.size() - zeroed, '\0');
        EXPECT_EQ(ReadRecoveryCopy(torn).has_value(), torn == copy) << zeroed;
    }
}

TEST(RecoveryCopy, EveryFlippedBitIsFound) {
    const std::string copy = SealRecoveryCopy({Titles(), Notes()}, {5, false});
    for (std::size_t at = 0; at < copy.size(); ++at)
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string damaged = copy;
            damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ (1U << bit));
            EXPECT_FALSE(ReadRecoveryCopy(damaged)) << at << " " << bit;
        }
}

TEST(RecoveryCopy, AnotherStampKeepsTheDocument) {
    const std::string copy = SealRecoveryCopy({Titles(), Notes()}, {5, false});
    const auto restamped = RestampRecoveryCopy(copy, {9, true});
    ASSERT_TRUE(restamped);
    const auto document = ReadRecoveryCopy(*restamped);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->stamp, (RecoveryStamp{9, true}));
    ExpectSame(document->titles, Titles());
    EXPECT_FALSE(RestampRecoveryCopy(copy.substr(1), {}));
}

TEST(RecoveryCopy, TheFingerprintGoesByTheTitlesAlone) {
    SUBTITLES titles = Titles();
    const std::uint64_t before = RecoveryBody(titles, Notes()).TitlesFingerprint();
    EXPECT_EQ(RecoveryBody(titles, RecoveryNotes()).TitlesFingerprint(), before);
    titles.Text(1, "other");
    EXPECT_NE(RecoveryBody(titles, Notes()).TitlesFingerprint(), before);
    titles.Undo();
    EXPECT_EQ(RecoveryBody(titles, Notes()).TitlesFingerprint(), before);
    titles.Text(2, "x");
    titles.ClearUndo();
    EXPECT_NE(RecoveryBody(titles, Notes()).TitlesFingerprint(), before);
}

} // namespace
