#include "formats/recoverycopy.h"

#include "formats/sami.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>
#include <random>
#include <string>

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

TEST(RecoveryCopy, ACodePageComesBackWithItsName) {
    for (const char* page : {"", "KOI8-R", "GB18030"}) {
        RecoveryNotes notes = Notes();
        notes.style.encoding = FileStyle::Encoding::CodePage;
        notes.style.codePage = page;
        const auto document = ReadRecoveryCopy(SealRecoveryCopy({Titles(), notes}, {}));
        ASSERT_TRUE(document) << page;
        EXPECT_EQ(document->notes, notes) << page;
    }
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

/// The second layout: titles that carry something of their format.
constexpr std::string_view SecondLayout =
    "5175656c6d617252020000000100000000f1536500000000bb0000000000000026a4f33dd8ff6622050000006"
    "12e61766905000000622e61737360e5d022dbf937400001030000006173730400000068656164010000000001"
    "000000000000000000f03f0000000000000440080000006f6e650d0a74776f000000000200000003000000726"
    "56403000000ffffffff0000000003000000000000000000f03f0000000000000440070000006368616e676564"
    "0000000000000840000000000000104005000000746872656500000000000014400000000000001840040000"
    "00666f7572";

TEST(RecoveryCopy, OfTheSecondLayoutIsRead) {
    const std::string copy = BytesOf(SecondLayout);
    for (const std::string& read : {copy, *RestampRecoveryCopy(copy, {1700000000, true})}) {
        const auto document = ReadRecoveryCopy(read);
        ASSERT_TRUE(document);
        EXPECT_EQ(document->stamp, (RecoveryStamp{1700000000, true}));
        EXPECT_EQ(document->notes.subtitleFile, "b.ass");
        EXPECT_EQ(document->notes.style.kept, "head");
        EXPECT_FALSE(document->notes.draft);
        EXPECT_TRUE(document->earlier.empty());
        SUBTITLES titles = document->titles;
        ASSERT_EQ(titles.Count(), 3);
        EXPECT_EQ(titles.Text(1), "changed");
        EXPECT_EQ(titles.Extra(3), TitleExtra("red"));
        EXPECT_EQ(titles.Undo(), 1);
        EXPECT_EQ(titles.Text(1), "one\r\ntwo");
    }
}

/// What damage is reported of.
struct Damage {
    const char* what;
    /// Where, as a share of the copy; and how many bytes of it.
    double at;
    std::size_t bytes;
    std::int32_t mostLost;
};

std::ostream& operator<<(std::ostream& out, const Damage& damage) {
    return out << damage.what;
}

class DamagedCopy : public testing::TestWithParam<Damage> {};

SUBTITLES ManyTitles() {
    SUBTITLES titles;
    titles.UndoEnabled(true);
    for (int i = 1; i <= 5000; ++i)
        titles.Add(i, i + 0.5, "title " + std::to_string(i));
    titles.Text(7, "changed");
    return titles;
}

TEST_P(DamagedCopy, IsReadAsFarAsItsBlocksAreWhole) {
    const SUBTITLES titles = ManyTitles();
    std::string copy = SealRecoveryCopy({titles, Notes()}, {5, true});
    const auto at = static_cast<std::size_t>(GetParam().at * static_cast<double>(copy.size()));
    const std::size_t length = std::min(GetParam().bytes, copy.size() - at);
    copy.replace(at, length, length, '\xFF');
    EXPECT_FALSE(ReadRecoveryCopy(copy));
    const auto document = SalvageRecoveryCopy(copy);
    ASSERT_TRUE(document);
    EXPECT_TRUE(document->damaged);
    EXPECT_LE(document->lostTitles, GetParam().mostLost);
    ASSERT_EQ(document->titles.Count(), 5000 - document->lostTitles);
    EXPECT_EQ(document->titles.UndoCount(), document->lostTitles == 0 ? 1 : 0);
    EXPECT_TRUE(document->titles.UndoEnabled());
    std::int32_t expected = 0;
    for (std::int32_t i = 1; i <= document->titles.Count(); ++i) {
        // Each is one of the titles, in their order.
        do
            ++expected;
        while (titles.StartTime(expected) != document->titles.StartTime(i) && expected <= 5000);
        ASSERT_LE(expected, 5000);
        EXPECT_EQ(document->titles.Text(i), titles.Text(expected));
    }
}

const Damage Damages[]{
    {"the header", 0, 8, 0},
    {"a byte in the middle", 0.5, 1, 512},
    {"two blocks", 0.3, 20000, 1536},
    {"the last byte", 0.99999, 1, 512},
    {"the second half", 0.5, 1 << 30, 3000},
};

INSTANTIATE_TEST_SUITE_P(All, DamagedCopy, testing::ValuesIn(Damages));

TEST(RecoveryCopy, ACutOneIsReadUpToTheCut) {
    const std::string copy = SealRecoveryCopy({ManyTitles(), Notes()}, {5, false});
    std::int32_t before = 0;
    for (std::size_t length = 0; length < copy.size(); length += 4999) {
        const auto document = SalvageRecoveryCopy(std::string_view(copy).substr(0, length));
        const std::int32_t count = document ? document->titles.Count() : 0;
        EXPECT_GE(count, before);
        before = count;
    }
    EXPECT_GT(before, 4000);
}

TEST(RecoveryCopy, NothingIsSalvagedFromWhatIsNone) {
    for (const char* bytes : {"", "damaged", "QuelmarR", "QBlkQBlkQBlk"})
        EXPECT_FALSE(SalvageRecoveryCopy(bytes)) << bytes;
    EXPECT_FALSE(SalvageRecoveryCopy(std::string(100000, 'Q')));
    std::string old = BytesOf(SecondLayout);
    old.back() = 'x';
    EXPECT_FALSE(SalvageRecoveryCopy(old));
}

TEST(RecoveryCopy, AWholeOneIsSalvagedWhole) {
    const auto document = SalvageRecoveryCopy(SealRecoveryCopy({Titles(), Notes()}, {5, false}));
    ASSERT_TRUE(document);
    EXPECT_FALSE(document->damaged);
    EXPECT_EQ(document->lostTitles, 0);
    EXPECT_EQ(document->notes, Notes());
}

TEST(RecoveryCopy, BringsTextThatIsBeingTyped) {
    RecoveryNotes notes = Notes();
    notes.draft = Draft{2, "before", "typed\r\n\xC3\x9F", "00:00:01,000", "2.5"};
    const RecoveryBody body(Titles(), notes);
    EXPECT_TRUE(body.HasDraft());
    EXPECT_EQ(body.TitlesFingerprint(), RecoveryBody(Titles(), Notes()).TitlesFingerprint());
    const auto document = ReadRecoveryCopy(SealRecoveryCopy(body, {}));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->notes, notes);
}

Version About(std::string step, std::int64_t time) {
    Version about;
    about.step = std::move(step);
    about.time = time;
    about.subtitleFile = "/films/b.srt";
    about.style.byteOrderMark = true;
    return about;
}

TEST(RecoveryCopy, BringsTheTenNewestVersions) {
    Versions versions;
    SUBTITLES titles = ManyTitles();
    titles.Extra(3, TitleExtra("red"));
    for (int i = 1; i <= 14; ++i) {
        titles.Text(5, std::to_string(i));
        versions.Keep(titles, About("step " + std::to_string(i), 100 + i));
    }
    const std::string copy = SealRecoveryCopy({titles, Notes(), versions}, {5, false});
    const std::string without = SealRecoveryCopy({titles, Notes()}, {5, false});
    EXPECT_LT(copy.size(), without.size() * 3) << "ten whole versions would be ten times that";
    for (const std::string& read : {copy, *RestampRecoveryCopy(copy, {5, false})}) {
        const auto document = ReadRecoveryCopy(read);
        ASSERT_TRUE(document);
        ASSERT_EQ(document->earlier.size(), 10U);
        for (std::size_t age = 0; age < 10; ++age) {
            const Version& version = document->earlier[age];
            EXPECT_EQ(version.step, versions.At(age).step);
            EXPECT_EQ(version.time, versions.At(age).time);
            EXPECT_EQ(version.subtitleFile, "/films/b.srt");
            EXPECT_TRUE(version.style.byteOrderMark);
            EXPECT_EQ(version.count, 5000);
            ExpectSame(TitlesOf(version), TitlesOf(versions.At(age)));
            EXPECT_EQ(TitlesOf(version).Extra(3), TitleExtra("red"));
        }
    }
}

TEST(RecoveryCopy, LeavesVersionsOutThatWouldMakeItTooLarge) {
    Versions versions;
    SUBTITLES titles;
    for (int i = 0; i < 6; ++i) {
        titles.Clear();
        titles.Add(1, 2, std::string(5'000'000, static_cast<char>('a' + i)));
        versions.Keep(titles, About("x", i));
    }
    const auto document = ReadRecoveryCopy(SealRecoveryCopy({titles, Notes(), versions}, {}));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->earlier.size(), 3U);
    EXPECT_EQ(document->earlier.front().time, 5);
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
    const std::string copy = BytesOf(SecondLayout);
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
