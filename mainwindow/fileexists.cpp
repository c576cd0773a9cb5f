#include "mainwindow/fileexists.h"

#include "platform/paths.h"

#include <QDir>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace {

constexpr QDir::Filters Searched = QDir::Files | QDir::Hidden
#ifndef Q_OS_WIN
                                   | QDir::CaseSensitive
#endif
    ;

} // namespace

bool FileExists(const QString& path) {
    if (path.isEmpty() || path.contains(QChar(0)))
        return false;
    std::error_code none;
    if (std::filesystem::is_regular_file(PathOf(path), none))
        return true;
    const QFileInfo file(path);
    QString pattern = file.fileName();
    if (!pattern.contains(QLatin1Char('*')) && !pattern.contains(QLatin1Char('?')))
        return false;
    if (pattern == QLatin1String("*.*"))
        pattern = QStringLiteral("*");
    // Only the two are wildcards; Qt knows sets of characters too.
    pattern.replace(QLatin1Char('['), QLatin1String("[[]"));
    return !file.dir().entryList({pattern}, Searched).isEmpty();
}
