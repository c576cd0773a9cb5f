#include "mainwindow/patientfiles.h"

#include "mainwindow/fileexists.h"
#include "platform/beside.h"
#include "platform/paths.h"

#include <QFile>

#include <utility>

namespace {

QString Shown(const std::filesystem::path& file) {
#ifdef Q_OS_WIN
    return QString::fromStdWString(file.wstring());
#else
    return QFile::decodeName(file.c_str());
#endif
}

template <typename ANSWER>
std::optional<ANSWER> Ask(QWidget* window, const std::filesystem::path& file,
                          std::function<ANSWER()> work) {
    return AskBeside<ANSWER>(window, Shown(file.parent_path()), Shown(file), std::move(work));
}

} // namespace

bool FileExistsPatiently(QWidget* window, const QString& name) {
    return Ask<bool>(window, PathOf(name), [name] { return FileExists(name); }).value_or(false);
}

std::optional<FileBytes> ReadWholeFilePatiently(QWidget* window,
                                                const std::filesystem::path& file) {
    using Bytes = std::optional<FileBytes>;
    auto answer = Ask<Bytes>(window, file, [file] { return ReadWholeFile(file); });
    return answer ? std::move(*answer) : std::nullopt;
}

FileStamp StampPatiently(QWidget* window, const std::filesystem::path& file) {
    return Ask<FileStamp>(window, file, [file] { return StampOf(file); }).value_or(FileStamp());
}

std::function<bool(std::function<void()>)> BesideFor(QWidget* window,
                                                     const std::filesystem::path& file) {
    return [=](std::function<void()> work) {
        return RunBeside(window, Shown(file.parent_path()), Shown(file), std::move(work));
    };
}
