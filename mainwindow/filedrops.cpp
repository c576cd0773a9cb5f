#include "mainwindow/filedrops.h"

#include "platform/errorgate.h"
#include "platform/paths.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <algorithm>

namespace {

/// Empty: it is no file of this computer.
QString FileOf(const QUrl& link) {
    if (!link.isLocalFile())
        return {};
#ifdef Q_OS_WIN
    return link.toLocalFile();
#else
    // Not by way of a text: the name may be none.
    return NameOfBytes(QByteArray::fromPercentEncoding(link.path(QUrl::FullyEncoded).toLatin1()));
#endif
}

} // namespace

QStringList DraggedFiles(const QMimeData& dragged) {
    QList<QUrl> links = dragged.urls();
    if (links.isEmpty())
        for (const QString& line : dragged.text().split(QLatin1Char('\n')))
            links << QUrl(line.trimmed());
    QStringList files;
    for (const QUrl& link : links)
        if (const QString file = FileOf(link); !file.isEmpty())
            files << file;
    return files;
}

FileDrops::FileDrops(QObject* owner)
    : QObject(owner) {
    // Ahead of the boxes, which would take the link for a text.
    qApp->installEventFilter(this);
}

void FileDrops::Take(QWidget& window) {
    window.setAcceptDrops(true);
    m_windows << &window;
}

bool FileDrops::IsOurs(const QObject* watched) const {
    const auto* widget = qobject_cast<const QWidget*>(watched);
    return widget != nullptr && QApplication::activeModalWidget() == nullptr &&
           std::any_of(m_windows.begin(), m_windows.end(),
                       [&](const QPointer<QWidget>& window) { return window == widget->window(); });
}

bool FileDrops::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        break;
    default:
        return QObject::eventFilter(watched, event);
    }
    if (!IsOurs(watched))
        return false;
    auto* drop = static_cast<QDropEvent*>(event);
    const QStringList files = DraggedFiles(*drop->mimeData());
    if (files.isEmpty())
        return false;
    // Whoever drags them shall not remove them.
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (event->type() == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, files] { Guarded([&] { emit Dropped(files); }); }, Qt::QueuedConnection);
    return true;
}
