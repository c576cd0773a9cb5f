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

/// Of the file that is there by that name; empty when none is.
QString MarkOf(const QString& file, const QString& stateFolder) {
    const QString path = QFileInfo(file).canonicalFilePath();
    if (path.isEmpty())
        return {};
    return stateFolder + '/' + QString::number(Checksum(path.toStdString()), 16) + Suffix;
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

void OpenMark::Follow() {
    if (m_document.SubtitleFile == m_file)
        return;
    m_file = m_document.SubtitleFile;
    const QString file = QString::fromStdString(m_file).trimmed();
    m_lock.reset();
    if (file.isEmpty())
        return;
    const auto taken = AskBeside<std::shared_ptr<FileLock>>(
        &m_window, QFileInfo(file).path(), file, [file, folder = m_stateFolder] {
            auto lock = std::make_shared<FileLock>();
            const QString mark = MarkOf(file, folder);
            if (!mark.isEmpty())
                lock->Take(mark);
            return lock;
        });
    m_lock = taken.value_or(nullptr);
}

bool OpenMark::IsSetElsewhere(QWidget& window, const QString& file, const QString& stateFolder) {
    return AskBeside<bool>(&window, QFileInfo(file).path(), file,
                           [=] {
                               RemoveLeft(stateFolder);
                               const QString mark = MarkOf(file, stateFolder);
                               return !mark.isEmpty() && FileLock::HeldElsewhere(mark);
                           })
        .value_or(false);
}
