#pragma once

#include "model/document.h"

#include <QString>

#include <memory>
#include <string>

class FileLock;
class QWidget;

/// Tells other starts of the program which subtitle file is open here, by a lock in the
/// state folder that the system lets go of when the program ends, however it ends.
class OpenMark {
  public:
    /// Follows the document from here on.
    OpenMark(Document& document, QWidget& window, QString stateFolder);

    /// Another start has this file open, by whatever path.
    static bool IsSetElsewhere(QWidget& window, const QString& file, const QString& stateFolder);

  private:
    void Follow();

    Document& m_document;
    QWidget& m_window;
    const QString m_stateFolder;
    std::string m_file;
    std::shared_ptr<FileLock> m_lock;
    Connection m_connection;
};
