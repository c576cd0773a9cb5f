#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

class QDropEvent;
class QMimeData;
class QWidget;

/// Takes files that are dropped anywhere on its windows, boxes for texts included.
class FileDrops : public QObject {
    Q_OBJECT

  public:
    explicit FileDrops(QObject* owner);

    /// Of this window too.
    void Take(QWidget& window);

  signals:
    /// Told when the drop itself is over, so that questions may be asked.
    void Dropped(const QStringList& files);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool IsOurs(const QObject* watched) const;

    QList<QPointer<QWidget>> m_windows;
};

/// The files that something dragged names, as a list of them or as `file://` links in a text.
QStringList DraggedFiles(const QMimeData& dragged);
