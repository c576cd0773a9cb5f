#include "platform/recoverystore.h"

#include "base/wholefile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUuid>

#include <algorithm>
#include <chrono>
#include <new>
#include <utility>

namespace {

constexpr auto RetryAfter = std::chrono::seconds(5);
const auto CopySuffix = QStringLiteral(".recovery");
const auto LockSuffix = QStringLiteral(".lock");
constexpr auto OwnerOnly = QFile::ReadOwner | QFile::WriteOwner;

QString LockOf(const QString& copyFile) {
    return copyFile + LockSuffix;
}

bool MakeFolder(const QString& folder) {
    if (QFileInfo(folder).isDir())
        return true;
    return QDir().mkpath(folder) && QFile::setPermissions(folder, OwnerOnly | QFile::ExeOwner);
}

/// Through a temporary file that is flushed to the disk before it takes the name.
bool WriteCopy(const QString& name, const std::string& copy) {
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(OwnerOnly))
        return false;
    file.write(copy.data(), static_cast<qint64>(copy.size()));
    if (!file.commit())
        return false;
    FlushFolder(QFileInfo(name).filesystemPath());
    return true;
}

} // namespace

QString RecoveryStore::DefaultFolder() {
#ifdef Q_OS_WIN
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
#else
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (!base.startsWith('/'))
        base = QDir::homePath() + "/.local/state";
#endif
    return base + "/Tevo/Quelmar";
}

RecoveryStore::RecoveryStore(QString folder)
    : m_folder(std::move(folder))
    , m_thread([this] { Work(); }) {}

RecoveryStore::~RecoveryStore() {
    {
        const std::lock_guard guard(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void RecoveryStore::Post(Maker maker) {
    {
        const std::lock_guard guard(m_mutex);
        if (!m_jobs.empty() && !m_jobs.back().archive)
            m_jobs.pop_back();
        m_jobs.push_back({std::move(maker), false});
    }
    m_changed.notify_all();
}

void RecoveryStore::Archive(Maker maker) {
    {
        const std::lock_guard guard(m_mutex);
        m_jobs.push_back({std::move(maker), true});
    }
    m_changed.notify_all();
}

void RecoveryStore::Flush() {
    std::unique_lock guard(m_mutex);
    m_changed.wait(guard, [this] { return m_jobs.empty() && !m_working; });
}

bool RecoveryStore::HasCopy() const {
    const std::lock_guard guard(m_mutex);
    return m_hasCopy;
}

void RecoveryStore::Work() {
    std::vector<Job> failed;
    std::unique_lock guard(m_mutex);
    for (;;) {
        const auto awake = [this] {
            return m_ending || !m_jobs.empty();
        };
        if (failed.empty())
            m_changed.wait(guard, awake);
        else
            m_changed.wait_for(guard, RetryAfter, awake);
        if (m_jobs.empty() && m_ending)
            return;
        std::vector<Job> jobs;
        if (m_jobs.empty()) {
            jobs.swap(failed);
        } else {
            jobs.push_back(std::move(m_jobs.front()));
            m_jobs.pop_front();
            if (!jobs.front().archive)
                std::erase_if(failed, [](const Job& job) { return !job.archive; });
        }
        m_working = true;
        guard.unlock();
        for (Job& job : jobs)
            if (!Perform(job))
                failed.push_back(std::move(job));
        const bool hasCopy = !m_archived.empty() || QFileInfo::exists(m_slot.file);
        guard.lock();
        m_working = false;
        m_hasCopy = hasCopy;
        m_changed.notify_all();
    }
}

bool RecoveryStore::Perform(const Job& job) {
    std::optional<std::string> copy;
    try {
        copy = job.maker();
    } catch (const std::bad_alloc&) {
        return false;
    }
    if (!copy) {
        if (!job.archive && m_slot.lock.Held())
            QFile::remove(m_slot.file);
        return true;
    }
    if (!Prepare() || !WriteCopy(m_slot.file, *copy))
        return false;
    if (job.archive)
        m_archived.push_back(std::exchange(m_slot, Slot()));
    return true;
}

bool RecoveryStore::Prepare() {
    if (m_slot.lock.Held() && QFileInfo::exists(LockOf(m_slot.file)))
        return true;
    // The first copy, or somebody tidied the folder away under us.
    m_slot = Slot();
    if (!MakeFolder(m_folder))
        return false;
    const QString file =
        m_folder + '/' + QUuid::createUuid().toString(QUuid::WithoutBraces) + CopySuffix;
    if (!m_slot.lock.Take(LockOf(file)))
        return false;
    m_slot.file = file;
    return true;
}

OrphanCopy::OrphanCopy(FileLock lock, QString file)
    : m_lock(std::move(lock))
    , m_file(std::move(file)) {
    QFile copy(m_file);
    if (copy.open(QIODevice::ReadOnly))
        m_bytes = copy.readAll().toStdString();
}

std::int64_t OrphanCopy::Written() const {
    return QFileInfo(m_file).lastModified().toSecsSinceEpoch();
}

void OrphanCopy::Discard() {
    QFile::remove(m_file);
}

bool OrphanCopy::Replace(const std::string& copy) {
    if (!WriteCopy(m_file, copy))
        return false;
    m_bytes = copy;
    return true;
}

std::vector<OrphanCopy> ClaimOrphans(const QString& folder) {
    std::vector<OrphanCopy> orphans;
    // By modification time, the newest first.
    for (const QFileInfo& file :
         QDir(folder).entryInfoList({'*' + CopySuffix}, QDir::Files | QDir::Hidden, QDir::Time)) {
        FileLock lock;
        if (lock.Take(LockOf(file.filePath())) && QFileInfo::exists(file.filePath()))
            orphans.emplace_back(std::move(lock), file.filePath());
    }
    // Locks without a copy, and half-written copies (they bear the copy's name and more).
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden)) {
        const auto end = file.fileName().indexOf(CopySuffix);
        const QString copy = folder + '/' + file.fileName().left(end + CopySuffix.size());
        if (end < 0 || copy == file.filePath() || QFileInfo::exists(copy))
            continue;
        FileLock lock;
        if (lock.Take(LockOf(copy)) && file.filePath() != LockOf(copy))
            QFile::remove(file.filePath());
    }
    return orphans;
}
