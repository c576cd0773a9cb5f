#include "platform/recoverystore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <future>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

namespace {

RecoveryStore::Maker Make(std::string copy) {
    return [copy = std::move(copy)] {
        return copy;
    };
}

std::optional<std::string> Nothing() {
    return std::nullopt;
}

class Store : public testing::Test {
  protected:
    QStringList Files(const QString& pattern = "*") const {
        return QDir(folder).entryList({pattern}, QDir::Files | QDir::Hidden);
    }

    std::vector<std::string> Orphans() const {
        std::vector<std::string> copies;
        for (const OrphanCopy& orphan : ClaimOrphans(folder))
            copies.push_back(orphan.Bytes());
        return copies;
    }

    QTemporaryDir home;
    QString folder = home.path() + "/state/Tevo/Quelmar";
};

TEST_F(Store, NothingIsOnDiskBeforeThereIsACopy) {
    {
        RecoveryStore store(folder);
        store.Post(Nothing);
        store.Flush();
        EXPECT_FALSE(store.HasCopy());
    }
    EXPECT_FALSE(QFileInfo::exists(folder));
    EXPECT_TRUE(Orphans().empty());
}

TEST_F(Store, ACopyOutlivesItsProgram) {
    {
        RecoveryStore store(folder);
        store.Post(Make("first"));
        store.Flush();
        store.Post(Make("second"));
        store.Flush();
        EXPECT_TRUE(store.HasCopy());
        EXPECT_EQ(Files("*.recovery").size(), 1);
    }
    EXPECT_EQ(Orphans(), std::vector<std::string>{"second"});
}

TEST_F(Store, TellsWhyNothingCanBeKept) {
    QDir(home.path()).mkpath("state/Tevo");
    QFile(folder).open(QIODevice::WriteOnly);
    std::vector<QString> told;
    RecoveryStore store(folder);
    store.WhenInTrouble([&](const QString& trouble) { told.push_back(trouble); });
    store.Probe();
    store.Flush();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_NE(told[0], "");
    QFile::remove(folder);
    store.Post(Make("kept"));
    store.Flush();
    EXPECT_EQ(told.size(), 2U);
    EXPECT_EQ(told.back(), "");
    store.Probe();
    store.Flush();
    EXPECT_EQ(told.size(), 2U);
    EXPECT_EQ(Files("*.recovery").size(), 1);
}

#ifdef Q_OS_LINUX
TEST_F(Store, TellsOfAFullDisk) {
    // No file grows beyond this.
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    QString told;
    {
        RecoveryStore store(folder);
        store.WhenInTrouble([&](const QString& trouble) { told = trouble; });
        store.Probe();
        store.Flush();
        store.WhenInTrouble(nullptr);
    }
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(told, "File too large");
}
#endif

TEST_F(Store, WhatIsPostedIsWrittenAtTheEnd) {
    RecoveryStore(folder).Post(Make("last moment"));
    EXPECT_EQ(Orphans(), std::vector<std::string>{"last moment"});
}

TEST_F(Store, NothingToKeepRemovesTheCopy) {
    {
        RecoveryStore store(folder);
        store.Post(Make("copy"));
        store.Flush();
        store.Post(Nothing);
        store.Flush();
        EXPECT_FALSE(store.HasCopy());
    }
    EXPECT_TRUE(Files().isEmpty());
}

TEST_F(Store, IsForTheUserAlone) {
    RecoveryStore store(folder);
    store.Post(Make("secret"));
    store.Flush();
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                        QFile::WriteOther | QFile::ExeOther;
    EXPECT_FALSE(QFile::permissions(folder) & others);
    for (const QString& file : Files())
        EXPECT_FALSE(QFile::permissions(folder + '/' + file) & (others | QFile::ExeOwner))
            << file.toStdString();
}

TEST_F(Store, RunningProgramsKeepTheirCopies) {
    RecoveryStore one(folder);
    RecoveryStore two(folder);
    one.Post(Make("one"));
    two.Post(Make("two"));
    one.Flush();
    two.Flush();
    EXPECT_EQ(Files("*.recovery").size(), 2);
    EXPECT_TRUE(Orphans().empty());
}

TEST_F(Store, AnOrphanIsTakenOnce) {
    RecoveryStore(folder).Post(Make("copy"));
    {
        const auto taken = ClaimOrphans(folder);
        EXPECT_EQ(taken.size(), 1U);
        EXPECT_TRUE(ClaimOrphans(folder).empty());
    }
    auto again = ClaimOrphans(folder);
    ASSERT_EQ(again.size(), 1U);
    again.front().Discard();
    again.clear();
    EXPECT_TRUE(Files().isEmpty());
}

TEST_F(Store, AnOrphanCanBeReplaced) {
    RecoveryStore(folder).Post(Make("copy"));
    EXPECT_TRUE(ClaimOrphans(folder).front().Replace("other"));
    EXPECT_EQ(Orphans(), std::vector<std::string>{"other"});
}

TEST_F(Store, AnArchivedCopyStaysBesideTheNext) {
    {
        RecoveryStore store(folder);
        store.Post(Make("old work"));
        store.Archive(Make("old work at its end"));
        store.Post(Nothing);
        store.Flush();
        EXPECT_TRUE(store.HasCopy());
        store.Post(Make("new work"));
        store.Flush();
        // They belong to a running program.
        EXPECT_TRUE(Orphans().empty());
    }
    auto orphans = Orphans();
    std::sort(orphans.begin(), orphans.end());
    EXPECT_EQ(orphans, (std::vector<std::string>{"new work", "old work at its end"}));
}

TEST_F(Store, TheNewestOfManyIsWritten) {
    std::promise<void> begun;
    std::promise<void> goOn;
    std::atomic<int> made = 0;
    RecoveryStore store(folder);
    store.Post([&]() -> std::optional<std::string> {
        begun.set_value();
        goOn.get_future().wait();
        return "slow";
    });
    begun.get_future().wait();
    for (int i = 0; i < 10; ++i)
        store.Post([&made, i]() -> std::optional<std::string> {
            ++made;
            return std::to_string(i);
        });
    goOn.set_value();
    store.Flush();
    EXPECT_EQ(made, 1);
    QFile copy(folder + '/' + Files("*.recovery").value(0));
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll().toStdString(), "9");
}

TEST_F(Store, AFolderThatVanishesIsMadeAnew) {
    RecoveryStore store(folder);
    store.Post(Make("one"));
    store.Flush();
    QDir(home.path() + "/state").removeRecursively();
    store.Post(Make("two"));
    store.Flush();
    EXPECT_TRUE(store.HasCopy());
    EXPECT_EQ(Files("*.recovery").size(), 1);
    EXPECT_TRUE(Orphans().empty());
}

TEST_F(Store, WhereNoFolderCanBeTheProgramGoesOn) {
    QFile inTheWay(home.path() + "/state");
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    {
        RecoveryStore store(folder);
        store.Post(Make("one"));
        store.Flush();
        EXPECT_FALSE(store.HasCopy());
        inTheWay.remove();
        store.Post(Make("two"));
        store.Flush();
        EXPECT_TRUE(store.HasCopy());
    }
    EXPECT_EQ(Orphans(), std::vector<std::string>{"two"});
}

TEST_F(Store, AMakerWithoutMemoryKeepsWhatIsThere) {
    {
        RecoveryStore store(folder);
        store.Post(Make("one"));
        store.Flush();
        store.Post([]() -> std::optional<std::string> { throw std::bad_alloc(); });
        store.Flush();
        EXPECT_TRUE(store.HasCopy());
    }
    EXPECT_EQ(Orphans(), std::vector<std::string>{"one"});
}

TEST_F(Store, WhatAKilledProgramLeftIsTidiedAway) {
    RecoveryStore(folder).Post(Make("copy"));
    for (const char* name : {"a.recovery.lock", "b.recovery.Xy12Zw", "b.recovery.lock"}) {
        QFile left(folder + '/' + name);
        ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(Orphans(), std::vector<std::string>{"copy"});
    EXPECT_EQ(Files().size(), 1);
}

} // namespace
