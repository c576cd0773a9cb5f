#include "mainwindow/patientfiles.h"

#include "mainwindow/fileexists.h"
#include "platform/beside.h"
#include "platform/errorgate.h"
#include "platform/paths.h"

#include <QFile>
#include <QFileInfo>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

namespace {

/// How long nobody minds a window that stands still.
constexpr auto Unfelt = std::chrono::milliseconds(250);
constexpr auto PollInterval = std::chrono::milliseconds(20);

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

/// A film that cannot be read is the player's business.
bool FilmAnswers(const QString& name) {
    constexpr qint64 Beginning = 65536;
    if (!FileExists(name))
        return false;
    QFile film(name);
    if (QFileInfo(name).isFile() && film.open(QIODevice::ReadOnly))
        film.read(Beginning);
    return true;
}

} // namespace

bool FileExistsPatiently(QWidget* window, const QString& name) {
    return Ask<bool>(window, PathOf(name), [name] { return FileExists(name); }).value_or(false);
}

bool FilmAnswersPatiently(QWidget* window, const QString& name) {
    return Ask<bool>(window, PathOf(name), [name] { return FilmAnswers(name); }).value_or(false);
}

void WhenFilmAnswers(QWidget* window, const QString& name, std::function<void(bool)> answered) {
    std::packaged_task<bool()> asking([name] { return FilmAnswers(name); });
    auto answer = std::make_shared<std::future<bool>>(asking.get_future());
    try {
        std::thread(std::move(asking)).detach();
    } catch (const std::system_error&) {
        return;
    }
    if (answer->wait_for(Unfelt) == std::future_status::ready)
        return answered(answer->get());
    auto* poll = new QTimer(window);
    QObject::connect(poll, &QTimer::timeout, poll, [=, answered = std::move(answered)] {
        if (answer->wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            return;
        poll->stop();
        poll->deleteLater();
        Guarded([&] { answered(answer->get()); });
    });
    poll->start(PollInterval);
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
