#pragma once

#include "platform/filelock.h"

#include <QCoreApplication>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

/// The copies of unsaved work in the user's state folder: one per running program,
/// held by a lock that ends with the program. Copies are made and written on a
/// thread of the store's own, each complete or not at all.
class RecoveryStore {
    Q_DECLARE_TR_FUNCTIONS(RecoveryStore)

  public:
    /// Runs on the store's thread. Answers the copy; nothing when there is nothing to
    /// keep, and what was kept is removed.
    using Maker = std::function<std::optional<std::string>()>;

    explicit RecoveryStore(QString folder = DefaultFolder());
    /// Finishes what was posted. A copy that is there stays, for the next start.
    ~RecoveryStore();
    RecoveryStore(const RecoveryStore&) = delete;
    RecoveryStore& operator=(const RecoveryStore&) = delete;

    /// Tevo/Quelmar in the user's folder for programs' state.
    static QString DefaultFolder();
    const QString& Folder() const { return m_folder; }

    /// Replaces the copy soon; what was posted before and is not yet begun is skipped.
    /// A copy that cannot be written is tried again every few seconds.
    void Post(Maker maker);
    /// The copy that is made stays beside the one that is posted next, until a later
    /// start of the program deals with it.
    void Archive(Maker maker);
    /// Waits until all that was posted is on the disk, or could not be written; no longer
    /// than this, as the disk may not answer.
    /// false: it is still at work.
    bool Flush(std::chrono::milliseconds most = std::chrono::seconds(10));
    /// Called on the store's thread with the reason why copies cannot be written ("disk
    /// full"), and with nothing when they can again.
    void WhenInTrouble(std::function<void(const QString&)> listener);
    /// Finds out whether copies could be written.
    void Probe();
    /// Of what was posted before the last `Flush`: something is there to be recovered.
    bool HasCopy() const;

  private:
    struct Job {
        Maker maker;
        bool archive;
        bool probe = false;
    };
    struct Slot {
        FileLock lock;
        QString file;
    };

    void Work();
    bool Perform(const Job& job);
    bool Prepare();
    bool TryOut();
    bool WriteCopy(const QString& name, const std::string& copy);
    void Tell(const QString& trouble);

    const QString m_folder;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    bool m_working = false;
    bool m_ending = false;
    bool m_hasCopy = false;
    QString m_trouble;
    std::function<void(const QString&)> m_whenInTrouble;
    // Used by the store's thread alone.
    Slot m_slot;
    std::vector<Slot> m_archived;
    std::thread m_thread;
};

/// A copy whose program has ended. It is held while this object lives: no other
/// program takes it meanwhile.
class OrphanCopy {
  public:
    OrphanCopy(FileLock lock, QString file);

    const QString& File() const { return m_file; }
    /// Empty for a file larger than `MostBytes`, which is no copy.
    const std::string& Bytes() const { return m_bytes; }
    static constexpr std::int64_t MostBytes = std::int64_t{1} << 30U;
    /// Seconds since 1970.
    std::int64_t Written() const;
    void Discard();
    /// Gives it another name, under which it is no copy any more but can still be looked
    /// into. Answers that name.
    QString SetAside();
    /// Puts another copy in its place.
    bool Replace(const std::string& copy);

  private:
    FileLock m_lock;
    QString m_file;
    std::string m_bytes;
};

/// Takes hold of all copies that no running program holds, the newest first. What a
/// program left unfinished when it was ended is tidied away.
std::vector<OrphanCopy> ClaimOrphans(const QString& folder = RecoveryStore::DefaultFolder());

/// Removes what was set aside longer ago than that.
void RemoveSetAside(const QString& folder, std::int64_t seconds);
