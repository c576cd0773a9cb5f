#include "platform/recoverystore.h"

#include "base/replacefile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <new>
#include <system_error>
#include <utility>

namespace {

constexpr auto RetryAfter = std::chrono::seconds(5);
const auto CopySuffix = QStringLiteral(".recovery");
const auto SetAsideSuffix = QStringLiteral(".damaged");
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

/// Answers for people why that failed; nothing when it did not.
std::optional<QString> FailureOfWriting(const QString& name, const std::string& copy) {
    std::error_code reason;
    ReplaceHooks hooks;
    hooks.forOwner = true;
    hooks.reason = &reason;
    if (ReplaceBytes(QFileInfo(name).filesystemFilePath(), copy, hooks) == ReplaceResult::Written)
        return std::nullopt;
    bool full = reason == std::errc::no_space_on_device;
#ifdef EDQUOT
    full = full || reason.value() == EDQUOT;
#endif
    if (full)
        return RecoveryStore::tr("disk full");
    return QString::fromStdString(reason.message());
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
        if (!m_jobs.empty() && !m_jobs.back().archive && !m_jobs.back().probe)
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

void RecoveryStore::Probe() {
    {
        const std::lock_guard guard(m_mutex);
        m_jobs.push_front({{}, false, true});
    }
    m_changed.notify_all();
}

void RecoveryStore::WhenInTrouble(std::function<void(const QString&)> listener) {
    const std::lock_guard guard(m_mutex);
    m_whenInTrouble = std::move(listener);
}

void RecoveryStore::Tell(const QString& trouble) {
    const std::lock_guard guard(m_mutex);
    if (trouble == std::exchange(m_trouble, trouble))
        return;
    if (m_whenInTrouble)
        m_whenInTrouble(trouble);
}

bool RecoveryStore::WriteCopy(const QString& name, const std::string& copy) {
    const auto failure = FailureOfWriting(name, copy);
    Tell(failure.value_or(QString()));
    return !failure;
}

bool RecoveryStore::TryOut() {
    constexpr std::size_t Little = 4096;
    if (!MakeFolder(m_folder)) {
        Tell(tr("%1 cannot be made").arg(m_folder));
        return false;
    }
    const QString file = m_folder + '/' + QUuid::createUuid().toString(QUuid::WithoutBraces);
    const bool written = WriteCopy(file, std::string(Little, ' '));
    QFile::remove(file);
    return written;
}

bool RecoveryStore::Flush(std::chrono::milliseconds most) {
    std::unique_lock guard(m_mutex);
    return m_changed.wait_for(guard, most, [this] { return m_jobs.empty() && !m_working; });
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
    if (job.probe)
        return TryOut();
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
    const QString file =
        m_folder + '/' + QUuid::createUuid().toString(QUuid::WithoutBraces) + CopySuffix;
    if (!MakeFolder(m_folder) || !m_slot.lock.Take(LockOf(file))) {
        TryOut();
        return false;
    }
    m_slot.file = file;
    return true;
}

OrphanCopy::OrphanCopy(FileLock lock, QString file)
    : m_lock(std::move(lock))
    , m_file(std::move(file)) {
    QFile copy(m_file);
    if (copy.open(QIODevice::ReadOnly) && copy.size() <= MostBytes)
        m_bytes = copy.readAll().toStdString();
}

std::int64_t OrphanCopy::Written() const {
    return QFileInfo(m_file).lastModified().toSecsSinceEpoch();
}

void OrphanCopy::Discard() {
    QFile::remove(m_file);
}

QString OrphanCopy::SetAside() {
    const QString aside = m_file.chopped(CopySuffix.size()) + SetAsideSuffix;
    QFile file(m_file);
    if (!file.rename(aside))
        return m_file;
    if (file.open(QIODevice::ReadWrite))
        file.setFileTime(QDateTime::currentDateTime(), QFile::FileModificationTime);
    return aside;
}

bool OrphanCopy::Replace(const std::string& copy) {
    if (FailureOfWriting(m_file, copy))
        return false;
    m_bytes = copy;
    return true;
}

std::vector<OrphanCopy> ClaimOrphans(const QString& folder) {
    std::vector<OrphanCopy> orphans;
    // By modification time, the newest first.
    for (const QFileInfo& file :
         QDir(folder).entryInfoList({'*' + CopySuffix}, QDir::Files | QDir::Hidden, QDir::Time)) {
        // A link to a pipe, say, is listed too.
        FileLock lock;
        if (file.isFile() && lock.Take(LockOf(file.filePath())) &&
            QFileInfo::exists(file.filePath()))
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

void RemoveSetAside(const QString& folder, std::int64_t seconds) {
    const QDateTime limit = QDateTime::currentDateTime().addSecs(-seconds);
    for (const QFileInfo& file :
         QDir(folder).entryInfoList({'*' + SetAsideSuffix}, QDir::Files | QDir::Hidden))
        if (file.lastModified() < limit)
            QFile::remove(file.filePath());
}
