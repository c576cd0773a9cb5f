#pragma once

#include <QFile>
#include <QString>

#include <filesystem>

/// A file's name as the system wants it; names that are no valid text come through whole.
inline std::filesystem::path PathOf(const QString& name) {
#ifdef Q_OS_WIN
    return name.toStdWString();
#else
    return QFile::encodeName(name).toStdString();
#endif
}
