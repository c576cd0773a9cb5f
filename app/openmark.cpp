#include "app/openmark.h"

#include "base/checksum.h"
#include "platform/beside.h"
#include "platform/errorgate.h"
#include "platform/filelock.h"
#include "platform/paths.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace {

const auto Suffix = QStringLiteral(".open");

/// The file's name whatever path leads to it; empty when there is no such file.
QString TrueName(QWidget& window, const QString& file) {
    return AskBeside<QString>(&window, QFileInfo(file).path(), file,
                              [file] { return QFileInfo(file).canonicalFilePath(); })
        .value_or(QString());
}

QString MarkOf(const QString& trueName, const QString& stateFolder) {
    return stateFolder + '/' + QString::number(Checksum(trueName.toStdString()), 16) + Suffix;
}

/// Those of programs that were ended in the midst of it.
void RemoveLeft(const QString& stateFolder) {
    for (const QString& name : QDir(stateFolder).entryList({'*' + Suffix}, QDir::Files))
        FileLock().Take(stateFolder + '/' + name);
}

} // namespace

OpenMark::OpenMark(Document& document, QWidget& window, QString stateFolder)
    : m_document(document)
    , m_window(window)
    , m_stateFolder(std::move(stateFolder))
    , m_connection(document.Subscribe([this](const Change& change) {
        if (change.kind == Change::Kind::Replaced || change.kind == Change::Kind::Saved)
            Guarded([this] { Follow(); });
    })) {}

// The old mark may lie on a disk that no longer answers, so it is not taken off here.
void OpenMark::Follow() {
    if (m_document.SubtitleFile == m_file)
        return;
    m_file = m_document.SubtitleFile;
    const QString file = QString::fromStdString(m_file).trimmed();
    const QString name = file.isEmpty() ? QString() : TrueName(m_window, file);
    const auto lock = AskBeside<std::shared_ptr<FileLock>>(
        &m_window, m_stateFolder, m_stateFolder, [name, old = m_lock, folder = m_stateFolder] {
            if (old)
                old->Release();
            auto taken = std::make_shared<FileLock>();
            if (!name.isEmpty())
                taken->Take(MarkOf(name, folder));
            return taken;
        });
    if (lock)
        m_lock = *lock;
}

bool OpenMark::IsSetElsewhere(QWidget& window, const QString& file, const QString& stateFolder) {
    const QString name = TrueName(window, file);
    if (name.isEmpty())
        return false;
    return AskBeside<bool>(&window, stateFolder, stateFolder,
                           [=] {
                               RemoveLeft(stateFolder);
                               return FileLock::HeldElsewhere(MarkOf(name, stateFolder));
                           })
        .value_or(false);
}
