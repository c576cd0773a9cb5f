#include "base/replacefile.h"

#include "base/savejournal.h"
#include "formattesting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#ifdef __linux__
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;

std::vector<std::string> NamesIn(const TestFolder& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder.Path()))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

using Names = std::vector<std::string>;

TEST(ReplaceBytes, MakesANewFile) {
    const TestFolder folder;
    EXPECT_EQ(ReplaceBytes(folder / "x", "new", {}), ReplaceResult::Written);
    EXPECT_EQ(FileText(folder / "x"), "new");
    EXPECT_EQ(NamesIn(folder), Names{"x"});
}

TEST(ReplaceBytes, ReplacesAFileByBytesOfAnyLength) {
    const TestFolder folder;
    PutFile(folder / "x", "old");
    for (const std::string& bytes : {std::string(), std::string("a"), std::string(100'000, 'b')}) {
        EXPECT_EQ(ReplaceBytes(folder / "x", bytes, {}), ReplaceResult::Written);
        EXPECT_EQ(FileText(folder / "x"), bytes);
    }
    EXPECT_EQ(NamesIn(folder), Names{"x"});
}

TEST(ReplaceBytes, FailsWhereThereIsNoFolder) {
    const TestFolder folder;
    EXPECT_EQ(ReplaceBytes(folder / "missing/x", "new", {}), ReplaceResult::Failed);
    PutFile(folder / "file", "old");
    EXPECT_EQ(ReplaceBytes(folder / "file/x", "new", {}), ReplaceResult::Failed);
    EXPECT_EQ(FileText(folder / "file"), "old");
}

TEST(ReplaceBytes, RefusesAFolder) {
    const TestFolder folder;
    EXPECT_EQ(ReplaceBytes(folder.Path(), "new", {}), ReplaceResult::NotAFile);
}

#ifdef __linux__

TEST(ReplaceBytes, TakesTheLongestName) {
    const TestFolder folder;
    // Where a name is cut, no character is.
    std::string name(51, 'x');
    while (name.size() < 255)
        name += "é";
    PutFile(folder / name, "old");
    EXPECT_EQ(ReplaceBytes(folder / name, "new", {}), ReplaceResult::Written);
    EXPECT_EQ(FileText(folder / name), "new");
}

TEST(ReplaceBytes, RefusesPipesDevicesAndSocketsAtOnce) {
    const TestFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    create_symlink("pipe", folder / "link");
    create_symlink("/dev/null", folder / "device");
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (folder / "socket").string().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    for (const char* name : {"pipe", "link", "device", "socket"})
        EXPECT_EQ(ReplaceBytes(folder / name, "new", {}), ReplaceResult::NotAFile) << name;
    close(socket);
    EXPECT_EQ(NamesIn(folder), (Names{"device", "link", "pipe", "socket"}));
}

TEST(ReplaceBytes, ReplacesWhatALinkLeadsTo) {
    const TestFolder folder;
    create_directory(folder / "real");
    PutFile(folder / "real/x", "old");
    create_symlink("real/x", folder / "relative");
    create_symlink(folder / "relative", folder / "chain");
    create_symlink("real/new", folder / "dangling");
    EXPECT_EQ(ReplaceBytes(folder / "chain", "new", {}), ReplaceResult::Written);
    EXPECT_EQ(FileText(folder / "real/x"), "new");
    EXPECT_EQ(ReplaceBytes(folder / "dangling", "made", {}), ReplaceResult::Written);
    EXPECT_EQ(FileText(folder / "real/new"), "made");
    for (const char* name : {"relative", "chain", "dangling"})
        EXPECT_TRUE(is_symlink(folder / name)) << name;
    create_symlink("loop", folder / "loop");
    EXPECT_EQ(ReplaceBytes(folder / "loop", "new", {}), ReplaceResult::Failed);
}

struct Rights {
    mode_t mode;
    uid_t user;
    gid_t group;
};

TEST(ReplaceBytes, KeepsModeAndOwner) {
    const bool root = geteuid() == 0;
    const TestFolder folder;
    for (const Rights& rights : {Rights{0600, 0, 0}, Rights{0664, 1234, 4321}, Rights{0444, 7, 7},
                                 Rights{0755, 1234, 0}}) {
        PutFile(folder / "x", "old");
        if (root) {
            ASSERT_EQ(chown((folder / "x").c_str(), rights.user, rights.group), 0);
        }
        ASSERT_EQ(chmod((folder / "x").c_str(), rights.mode), 0);
        if (!root && (rights.mode & 0200U) == 0)
            continue;
        EXPECT_EQ(ReplaceBytes(folder / "x", "new", {}), ReplaceResult::Written);
        struct stat now {};
        ASSERT_EQ(stat((folder / "x").c_str(), &now), 0);
        EXPECT_EQ(now.st_mode & 07777, rights.mode);
        if (root) {
            EXPECT_EQ(now.st_uid, rights.user);
            EXPECT_EQ(now.st_gid, rights.group);
        }
        EXPECT_EQ(FileText(folder / "x"), "new");
    }
}

TEST(ReplaceBytes, GivesANewFileTheUsualMode) {
    const TestFolder folder;
    const mode_t mask = umask(027);
    EXPECT_EQ(ReplaceBytes(folder / "x", "new", {}), ReplaceResult::Written);
    umask(mask);
    EXPECT_EQ(status(folder / "x").permissions(), fs::perms(0640));
}

/// The binary form of "user::rw-, user:7:r--, group::r--, mask::r--, other::---".
std::string AccessList() {
    return std::string("\x02\0\0\0"
                       "\x01\0\x06\0\xFF\xFF\xFF\xFF"
                       "\x02\0\x04\0\x07\0\0\0"
                       "\x04\0\x04\0\xFF\xFF\xFF\xFF"
                       "\x10\0\x04\0\xFF\xFF\xFF\xFF"
                       "\x20\0\0\0\xFF\xFF\xFF\xFF",
                       44);
}

std::string AttributeOf(const fs::path& file, const char* name) {
    std::string value(256, '\0');
    const ssize_t size = getxattr(file.c_str(), name, value.data(), value.size());
    value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return value;
}

struct AttributeRow {
    const char* name;
    std::string value;
};

TEST(ReplaceBytes, KeepsExtendedAttributesAndAccessLists) {
    const TestFolder folder;
    PutFile(folder / "x", "old");
    const AttributeRow rows[] = {{"user.xdg.comment", "from the library"},
                                 {"user.empty", ""},
                                 {"system.posix_acl_access", AccessList()}};
    for (const AttributeRow& row : rows)
        if (setxattr((folder / "x").c_str(), row.name, row.value.data(), row.value.size(), 0) != 0)
            GTEST_SKIP() << "the disk has none";
    EXPECT_EQ(ReplaceBytes(folder / "x", "new", {}), ReplaceResult::Written);
    for (const AttributeRow& row : rows)
        EXPECT_EQ(AttributeOf(folder / "x", row.name), row.value) << row.name;
    EXPECT_EQ(FileText(folder / "x"), "new");
}

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

TEST(ReplaceBytes, DoesNotReplaceWhatMayNotBeWritten) {
    const TestFolder folder;
    permissions(folder.Path(), fs::perms::all);
    PutFile(folder / "x", "old");
    permissions(folder / "x", fs::perms(0444));
    const AsOrdinaryUser user;
    EXPECT_EQ(ReplaceBytes(folder / "x", "new", {}), ReplaceResult::Failed);
    EXPECT_EQ(FileText(folder / "x"), "old");
    EXPECT_EQ(NamesIn(folder), Names{"x"});
}

TEST(ReplaceBytes, RemovesWhatACutShortSaveLeftBehind) {
    const TestFolder folder;
    PutFile(folder / "x", "old");
    PutFile(folder / ".x.quelmar~", "half of it");
    EXPECT_EQ(ReplaceBytes(folder / "x", "new", {}), ReplaceResult::Written);
    EXPECT_EQ(NamesIn(folder), Names{"x"});
}

TEST(ReplaceBytes, LeavesAloneWhatAnotherProgramIsWriting) {
    const TestFolder folder;
    PutFile(folder / "x", "old");
    PutFile(folder / ".x.quelmar~", "its bytes");
    const int other = open((folder / ".x.quelmar~").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    EXPECT_EQ(ReplaceBytes(folder / "x", "new", {}), ReplaceResult::Written);
    EXPECT_EQ(FileText(folder / "x"), "new");
    EXPECT_EQ(FileText(folder / ".x.quelmar~"), "its bytes");
    close(other);
}

/// A file that can only be overwritten where it is.
struct FixedFile {
    const char* name;
    void (*make)(const TestFolder& folder);
};

class ReplaceBytesInPlace : public testing::TestWithParam<FixedFile> {
  protected:
    ReplaceBytesInPlace() {
        PutFile(folder / "x", "the old bytes");
        permissions(folder / "x", fs::perms(0666));
        permissions(folder.Path(), fs::perms::all);
        GetParam().make(folder);
    }
    ~ReplaceBytesInPlace() override { permissions(folder.Path(), fs::perms::all); }

    ReplaceResult Replace(std::string_view bytes, bool keeps) {
        const AsOrdinaryUser user;
        ReplaceHooks hooks;
        hooks.keep = [&](std::string_view old) {
            kept = old;
            atThatMoment = FileText(folder / "x");
            return keeps;
        };
        return ReplaceBytes(folder / "x", bytes, hooks);
    }
    ino_t Inode() const {
        struct stat now {};
        stat((folder / "x").c_str(), &now);
        return now.st_ino;
    }

    const TestFolder folder;
    std::string kept;
    std::string atThatMoment;
};

TEST_P(ReplaceBytesInPlace, OverwritesOnlyWhenTheOldBytesAreKept) {
    const Names before = NamesIn(folder);
    const ino_t inode = Inode();
    EXPECT_EQ(Replace("new", false), ReplaceResult::NotKept);
    EXPECT_EQ(FileText(folder / "x"), "the old bytes");
    for (const std::string& bytes : {std::string("new"), std::string(10'000, 'n'), std::string()}) {
        const std::string old = FileText(folder / "x");
        EXPECT_EQ(Replace(bytes, true), ReplaceResult::Written);
        EXPECT_EQ(kept, old);
        EXPECT_EQ(atThatMoment, old);
        EXPECT_EQ(FileText(folder / "x"), bytes);
    }
    EXPECT_EQ(Inode(), inode);
    EXPECT_EQ(NamesIn(folder), before);
    {
        const AsOrdinaryUser user;
        EXPECT_EQ(ReplaceBytes(folder / "x", "new", {}), ReplaceResult::NotKept);
    }
    EXPECT_EQ(FileText(folder / "x"), "");
}

INSTANTIATE_TEST_SUITE_P(Rows, ReplaceBytesInPlace,
                         testing::Values(FixedFile{"HardLink",
                                                   [](const TestFolder& folder) {
                                                       create_hard_link(folder / "x", folder / "y");
                                                   }},
                                         FixedFile{"NoRightToTheFolder",
                                                   [](const TestFolder& folder) {
                                                       permissions(folder.Path(), fs::perms(0555));
                                                   }}),
                         [](const auto& row) { return row.param.name; });

TEST(SaveJournal, TellsOfTheFileThatHoldsNeither) {
    const TestFolder folder;
    PutFile(folder / "x", "old");
    {
        SaveJournal running;
        ASSERT_TRUE(running.Write(folder / "state", folder / "x", "old", "new\n"));
        PutFile(folder / "x", "torn");
        EXPECT_TRUE(FindInterruptedSaves(folder / "state").empty());
    }
    const auto found = FindInterruptedSaves(folder / "state");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].file, folder / "x");
    EXPECT_EQ(found[0].oldBytes, "old");
    EXPECT_EQ(found[0].newBytes, "new\n");
    for (const char* whole : {"old", "new\n"}) {
        PutFile(folder / "x", "torn");
        SaveJournal().Write(folder / "state", folder / "x", "old", "new\n");
        PutFile(folder / "x", whole);
        EXPECT_TRUE(FindInterruptedSaves(folder / "state").empty()) << whole;
        EXPECT_TRUE(is_empty(folder / "state")) << whole;
    }
}

TEST(SaveJournal, IsGoneWhenTheSaveIsDone) {
    const TestFolder folder;
    SaveJournal journal;
    EXPECT_EQ(journal.Name(), "");
    ASSERT_TRUE(journal.Write(folder.Path(), folder / "x", "old", "new"));
    EXPECT_TRUE(exists(journal.Name()));
    journal.Remove();
    EXPECT_TRUE(is_empty(folder.Path()));
}

TEST(SaveJournal, CannotBeWrittenWithoutAFolder) {
    const TestFolder folder;
    PutFile(folder / "file", "in the way");
    EXPECT_FALSE(SaveJournal().Write({}, folder / "x", "old", "new"));
    EXPECT_FALSE(SaveJournal().Write(folder / "file", folder / "x", "old", "new"));
}

TEST(SaveJournal, ThatIsDamagedIsLeftAlone) {
    const TestFolder folder;
    SaveJournal journal;
    ASSERT_TRUE(journal.Write(folder.Path(), folder / "x", "old", "new"));
    const std::string whole = FileText(journal.Name());
    journal.Remove();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        PutFile(folder / "a.saving", whole.substr(0, size));
        EXPECT_TRUE(FindInterruptedSaves(folder.Path()).empty()) << size;
        EXPECT_TRUE(exists(folder / "a.saving"));
    }
    PutFile(folder / "a.saving", whole);
    EXPECT_EQ(FindInterruptedSaves(folder.Path()).size(), 1U);
}

#endif

} // namespace
