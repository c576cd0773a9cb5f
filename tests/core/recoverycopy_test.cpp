#include "formats/recoverycopy.h"

#include "formats/sami.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

RecoveryNotes Notes() {
    RecoveryNotes notes;
    notes.mediaFile = "/films/Stra\xC3\x9F"
                      "e.avi";
    notes.subtitleFile = "/films/a.smi";
    notes.frameRate = 23.976;
    notes.style = {FileStyle::Encoding::Utf16BigEndian, true, "SAMI", std::string("kept\0", 5)};
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

TEST(RecoveryCopy, BringsWhatTitlesCarryBesideTimesAndText) {
    SUBTITLES titles = Titles();
    for (int i = 0; i < 6; ++i)
        titles.Add(i, i + 1, "x", TitleExtra(i % 3 == 2 ? "" : i < 3 ? "shared" : "a\xFF"));
    titles.Delete(4);
    const auto document = ReadRecoveryCopy(SealRecoveryCopy({titles, Notes()}, {}));
    ASSERT_TRUE(document);
    SUBTITLES read = document->titles;
    for (int undone = 0; undone < 2; ++undone) {
        ExpectSame(read, titles);
        for (std::int32_t i = 1; i <= titles.Count(); ++i)
            EXPECT_EQ(read.Extra(i), titles.Extra(i)) << i;
        read.Undo();
        titles.Undo();
    }
    EXPECT_EQ(read.Extra(4).Bytes(), "shared");
}

/// As the first release laid it out: a SAMI file of windows-1252, one title changed.
constexpr std::string_view FirstLayout =
    "5175656c6d617252010000000100000000f15365000000009e00000000000000db1ab67a51a56baa0c000000"
    "2f66696c6d732f612e6176690c0000002f66696c6d732f612e736d6960e5d022dbf93740030001080000003c"
    "424f44593e0d0a04000000454e4343090000003c2f424f44593e0d0a010000000001000000000000000000f0"
    "3f0000000000000440030000006f6e6502000000000000000000f03f0000000000000440030000006e657700"
    "0000000000084000000000000010400300000074776f";

std::string BytesOf(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
    return bytes;
}

TEST(RecoveryCopy, OfTheFirstLayoutIsRead) {
    const std::string copy = BytesOf(FirstLayout);
    for (const std::string& read : {copy, *RestampRecoveryCopy(copy, {1700000000, true})}) {
        const auto document = ReadRecoveryCopy(read);
        ASSERT_TRUE(document);
        EXPECT_EQ(document->stamp, (RecoveryStamp{1700000000, true}));
        RecoveryNotes notes;
        notes.mediaFile = "/films/a.avi";
        notes.subtitleFile = "/films/a.smi";
        notes.frameRate = 23.976;
        notes.style.encoding = FileStyle::Encoding::CodePage;
        KeepSami({"<BODY>\r\n", "ENCC", "</BODY>\r\n"}, notes.style);
        EXPECT_EQ(document->notes, notes);
        SUBTITLES titles = document->titles;
        EXPECT_EQ(titles.Text(1), "new");
        EXPECT_EQ(titles.EndTime(1), 2.5);
        EXPECT_EQ(titles.Text(2), "two");
        EXPECT_EQ(titles.Undo(), 1);
        EXPECT_EQ(titles.Text(1), "one");
    }
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

/// The checksum of a copy, which follows its magic word, version, flags, time and length.
std::uint64_t ChecksumOf(std::string_view copy) {
    constexpr std::size_t At = 32;
    std::uint64_t sum = 0xcbf29ce484222325ULL;
    const auto mix = [&sum](std::uint64_t word) {
        sum = (sum ^ word) * 0x100000001b3ULL;
        sum ^= sum >> 32U;
    };
    for (std::string_view bytes : {copy.substr(0, At), copy.substr(At + 8)}) {
        for (; bytes.size() >= 8; bytes.remove_prefix(8)) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes.data(), 8);
            mix(word);
        }
        for (const char byte : bytes)
            mix(static_cast<unsigned char>(byte));
    }
    return sum;
}

/// The copy with these bytes at its end, its length and checksum as if they belonged to it.
std::string SealedWith(std::string copy, std::string_view more) {
    copy += more;
    const std::uint64_t length = copy.size() - 40;
    std::memcpy(copy.data() + 24, &length, 8);
    const std::uint64_t sum = ChecksumOf(copy);
    std::memcpy(copy.data() + 32, &sum, 8);
    return copy;
}

TEST(RecoveryCopy, BytesBehindTheDocumentAreRejected) {
    const std::string copy = SealRecoveryCopy({Titles(), Notes()}, {5, false});
    ASSERT_EQ(SealedWith(copy, ""), copy) << "the copy is laid out otherwise than this test says";
    EXPECT_FALSE(ReadRecoveryCopy(SealedWith(copy, std::string(1, '\0'))));
    EXPECT_FALSE(ReadRecoveryCopy(SealedWith(copy, "a title more")));
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
