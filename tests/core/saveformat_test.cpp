#include "formattesting.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>

#ifdef __linux__
#include <csignal>
#include <cstdlib>

#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

constexpr const char* Failure = "One or more errors occurred while saving.\r\n"
                                "The file may be invalid.";

SaveResult Save(const std::filesystem::path& file, const std::vector<TestTitle>& titles,
                const SaveHooks& hooks = {}) {
    return SaveTitles(file, "", ListOf(titles), {}, hooks);
}

TEST(Save, IsRefusedWhenTheFirstTitleStartsBeforeZero) {
    EXPECT_EQ(SaveRefusal(ListOf({{-0.5, 1, "A"}, {3, 4, "B"}})),
              "Cannot save: all starting times must be positive.");
    EXPECT_EQ(SaveRefusal(ListOf({{3, 4, "A"}, {-0.5, 1, "B"}})), "");
    EXPECT_EQ(SaveRefusal(ListOf({{0, -4, "A"}})), "");
    EXPECT_EQ(SaveRefusal({}), "");
}

TEST(Save, ChoosesTheFormatByTheExtensionInAnyCase) {
    const TestFolder folder;
    const SaveResult result = Save(folder / "out.SRT", {{1, 2, "A"}});
    EXPECT_TRUE(result.written);
    EXPECT_STREQ(result.format->name, "SubRip");
    EXPECT_EQ(FileText(folder / "out.SRT"), "1\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\n\r\n");
}

TEST(Save, UnderANameThatTellsNoFormatIsRefused) {
    const TestFolder folder;
    PutFile(folder / "out", "old");
    for (const char* name : {"out", "out.doc"}) {
        const SaveResult result = Save(folder / name, {{1, 2, "A"}});
        EXPECT_FALSE(result.written);
        EXPECT_EQ(result.format, nullptr);
        EXPECT_EQ(result.message, "“" + std::string(name) + "” does not tell the format.");
    }
    EXPECT_EQ(FileText(folder / "out"), "old");
    EXPECT_FALSE(exists(folder / "out.txt"));
}

TEST(Save, ReplacesTheFileOnlyWhenAllIsComposed) {
    const TestFolder folder;
    PutFile(folder / "x.sub", "a longer text than what is written to it");
    std::string order;
    SaveHooks hooks;
    hooks.askFrameRate = [&order] {
        order += "rate ";
        return 25;
    };
    hooks.beforeWriting = [&] {
        order += FileText(folder / "x.sub").substr(0, 8);
    };
    EXPECT_TRUE(Save(folder / "x.sub", {{1, 2, "A"}}, hooks).written);
    EXPECT_EQ(order, "rate a longer");
    EXPECT_EQ(FileText(folder / "x.sub"), "{25}{50}A\r\n");
}

struct FaultRow {
    const char* name;
    double time;
};

class SaveFault : public testing::TestWithParam<FaultRow> {};

TEST_P(SaveFault, InATimeLeavesTheFileAsItWas) {
    const TestFolder folder;
    PutFile(folder / GetParam().name, "old");
    SaveHooks hooks;
    hooks.beforeWriting = [] {
        FAIL() << "nothing was composed";
    };
    const SaveResult result =
        Save(folder / GetParam().name, {{1, 2, "A"}, {3, GetParam().time, "B"}}, hooks);
    EXPECT_FALSE(result.written);
    EXPECT_EQ(result.message, Failure);
    EXPECT_EQ(FileText(folder / GetParam().name), "old");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SaveFault,
    testing::Values(FaultRow{"x.srt", 32768 * 3600.0}, FaultRow{"x.sub", 86'000'000.0},
                    FaultRow{"x.smi", 2'147'484.0},
                    FaultRow{"x.srt", std::numeric_limits<double>::infinity()},
                    FaultRow{"x.smi", std::numeric_limits<double>::quiet_NaN()}));

TEST(Save, ThatCannotWriteSaysSo) {
    const TestFolder folder;
    std::filesystem::create_directory(folder / "folder.srt");
    for (const char* name : {"folder.srt", "missing/x.srt"}) {
        const SaveResult result = Save(folder / name, {{1, 2, "A"}});
        EXPECT_FALSE(result.written) << name;
        EXPECT_EQ(result.message, Failure) << name;
    }
}

TEST(Save, LeavesThoseWhoReadTheOldFileTheOldFile) {
    const TestFolder folder;
    PutFile(folder / "x.srt", "old");
    std::ifstream elsewhere(folder / "x.srt", std::ios::binary);
    EXPECT_TRUE(Save(folder / "x.srt", {{1, 2, "A"}}).written);
    std::string line;
    std::getline(elsewhere, line);
    EXPECT_EQ(line, "old");
    EXPECT_EQ(FileText(folder / "x.srt"), "1\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\n\r\n");
}

#ifdef __linux__
/// The root user may write everywhere; what these tests are about is everybody else.
class AsOrdinaryUser {
  public:
    AsOrdinaryUser() {
        if (m_user == 0 && seteuid(Nobody) != 0)
            ADD_FAILURE() << "cannot become an ordinary user";
    }
    ~AsOrdinaryUser() {
        if (seteuid(m_user) != 0)
            std::abort();
    }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

  private:
    static constexpr uid_t Nobody = 65534;
    uid_t m_user = geteuid();
};

TEST(Save, IntoAReadOnlyFolderSaysSo) {
    using std::filesystem::perms;
    const TestFolder folder;
    PutFile(folder / "mine.srt", "old");
    permissions(folder / "mine.srt", perms::owner_read | perms::group_read | perms::others_read);
    const auto readOnly =
        perms::owner_read | perms::owner_exec | perms::others_read | perms::others_exec;
    permissions(folder.Path(), readOnly);
    for (const char* name : {"new.srt", "mine.srt"}) {
        const AsOrdinaryUser user;
        const SaveResult result = Save(folder / name, {{1, 2, "A"}});
        EXPECT_FALSE(result.written) << name;
        EXPECT_EQ(result.message, Failure) << name;
    }
    EXPECT_EQ(FileText(folder / "mine.srt"), "old");
    EXPECT_FALSE(exists(folder / "new.srt"));
    permissions(folder.Path(), perms::owner_all);
}

/// No file grows beyond this, as on a disk that is nearly full.
class RoomLeft {
  public:
    explicit RoomLeft(rlim_t bytes)
        : m_signal(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_limit);
        const rlimit small{bytes, m_limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~RoomLeft() {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        std::signal(SIGXFSZ, m_signal);
    }
    RoomLeft(const RoomLeft&) = delete;
    RoomLeft& operator=(const RoomLeft&) = delete;

  private:
    rlimit m_limit{};
    void (*m_signal)(int);
};

TEST(Save, OntoADiskThatFillsUpOnTheWaySaysSo) {
    const TestFolder folder;
    const std::vector<TestTitle> titles(1000, {1, 2, std::string(100, 'x')});
    constexpr std::size_t room = 50'000;
    {
        const RoomLeft left(room);
        const SaveResult result = Save(folder / "x.srt", titles);
        EXPECT_FALSE(result.written);
        EXPECT_EQ(result.message, Failure);
        EXPECT_FALSE(exists(folder / "x.srt"));
    }
    PutFile(folder / "x.srt", "old");
    {
        const RoomLeft left(room);
        const SaveResult result = Save(folder / "x.srt", titles);
        EXPECT_FALSE(result.written);
        EXPECT_EQ(result.details, "“x.srt” is still whole.");
        EXPECT_EQ(FileText(folder / "x.srt"), "old");
    }
    EXPECT_TRUE(Save(folder / "x.srt", titles).written);
}

TEST(Save, OntoADeviceIsRefused) {
    const TestFolder folder;
    std::filesystem::create_symlink("/dev/full", folder / "x.srt");
    const SaveResult result = Save(folder / "x.srt", {{1, 2, "A"}});
    EXPECT_FALSE(result.written);
    EXPECT_EQ(result.message, Failure);
    EXPECT_EQ(result.details, "“x.srt” is no ordinary file.");
}

TEST(Save, OfAFileOfSeveralNamesKeepsWhatItHeldUntilItIsDone) {
    const TestFolder folder;
    PutFile(folder / "x.srt", "old");
    create_hard_link(folder / "x.srt", folder / "other.srt");
    const SaveResult refused = Save(folder / "x.srt", {{1, 2, "A"}});
    EXPECT_FALSE(refused.written);
    EXPECT_EQ(refused.message, Failure);
    EXPECT_TRUE(refused.details.starts_with("“x.srt” was not touched: ")) << refused.details;
    EXPECT_EQ(FileText(folder / "other.srt"), "old");

    SaveHooks hooks;
    hooks.journalFolder = folder / "state";
    EXPECT_TRUE(Save(folder / "x.srt", {{1, 2, "A"}}, hooks).written);
    EXPECT_EQ(FileText(folder / "other.srt"), FileText(folder / "x.srt"));
    EXPECT_NE(FileText(folder / "other.srt"), "old");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "state"));
}
#endif

} // namespace
