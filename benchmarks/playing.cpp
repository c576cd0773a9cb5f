// What playing a film of 1280x720 costs in processor time, beside the player's own
// command-line program that draws by software too and into a window of the same size.
// `quelmar_playing_benchmark [RUNS]`; needs an X server with room for the picture, and
// the program mpv. Prints the share of one core of each, the seconds of starting left out.

#include "benchmarks/generating.h"
#include "formats/save.h"
#include "mainwindow/frmQuelmar.h"
#include "player/mediapicture.h"
#include "player/mediaplayercontrol.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr auto Warm = 3s;
constexpr auto Watched = 12s;
constexpr int FilmSeconds = 25;
/// The film again and again, to the length of a real one.
constexpr int Repeats = 200;
constexpr int Titles = 1500;
constexpr QSize Picture(1280, 720);

/// Seconds of processor time that a process has used, all its threads.
double Used(qint64 process) {
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray stat = file.readAll();
    // The name, in brackets, may hold blanks; user and system time are the 12th and
    // the 13th field after it.
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}

double Share(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForStarted();
    std::this_thread::sleep_for(Warm);
    const double before = Used(process.processId());
    std::this_thread::sleep_for(Watched);
    const double share =
        (Used(process.processId()) - before) / std::chrono::duration<double>(Watched).count();
    process.kill();
    process.waitForFinished();
    return share;
}

int Play(const QString& film, const QString& titles, bool onPicture) {
    frmQuelmar window;
    window.findChild<MediaPlayerControl*>()->TitlesOnPicture(onPicture);
    window.show();
    const auto* picture = window.findChild<MediaPicture*>();
    window.resize(window.size() + Picture - picture->size());
    window.OpenFiles(film, titles);
    QTimer::singleShot(500ms, &window, [&] {
        window.findChild<QAbstractButton*>(QStringLiteral("mpPlay"))->click();
        if (picture->size() != Picture)
            std::fprintf(stderr, "the picture is %d x %d\n", picture->width(), picture->height());
    });
    return QApplication::exec();
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

int Compare(int runs) {
    const QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    qputenv("XDG_STATE_HOME", folder.path().toUtf8());
    const QString once = folder.filePath("once.avi");
    const QString film = folder.filePath("film.avi");
    QProcess::execute("ffmpeg",
                      {"-v", "error", "-f", "lavfi", "-i", "testsrc2=size=1280x720:rate=25", "-f",
                       "lavfi", "-i", "sine=frequency=440", "-t", QString::number(FilmSeconds),
                       "-c:v", "mpeg4", "-q:v", "4", "-c:a", "mp3", once});
    QProcess::execute("ffmpeg", {"-v", "error", "-stream_loop", QString::number(Repeats - 1), "-i",
                                 once, "-c", "copy", film});
    const QString titles = folder.filePath("titles.srt");
    SUBTITLES generated = GeneratedTitles(Titles);
    // As long as titles are: one after the other, two to three seconds each.
    constexpr double Longer = 14;
    for (std::int32_t i = 1; i <= generated.Count(); ++i)
        generated.SetTimes(i, generated.StartTime(i) * Longer, generated.EndTime(i) * Longer);
    SaveTitles(titles.toStdString(), {}, generated, {}, {});
    const QString mpv = QStandardPaths::findExecutable("mpv");
    if (mpv.isEmpty() || QGuiApplication::platformName() != QLatin1String("xcb")) {
        std::fprintf(stderr, "needs an X server and the program mpv\n");
        return 2;
    }
    std::vector<double> ours;
    std::vector<double> bare;
    std::vector<double> theirs;
    for (int run = 0; run < runs; ++run) {
        ours.push_back(Share(QCoreApplication::applicationFilePath(), {"--play", film, titles}));
        bare.push_back(
            Share(QCoreApplication::applicationFilePath(), {"--play", film, titles, "bare"}));
        theirs.push_back(Share(mpv, {"--no-config", "--vo=x11", "--ao=null", "--hwdec=no",
                                     "--osc=no", "--geometry=1280x720", film}));
    }
    std::printf("| share of a core while 1280x720 plays | median | least | most |\n"
                "|---|---|---|---|\n");
    const auto print = [](const char* what, const std::vector<double>& values) {
        std::printf("| %s | %.1f %% | %.1f %% | %.1f %% |\n", what, 100 * Median(values),
                    100 * *std::min_element(values.begin(), values.end()),
                    100 * *std::max_element(values.begin(), values.end()));
    };
    print("Quelmar", ours);
    print("the same without titles on the picture", bare);
    print("mpv --vo=x11", theirs);
    std::printf("\nratio %.2f\n", Median(ours) / Median(theirs));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QUELMAR_AUDIO", "null");
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--play")
        return Play(arguments.value(2), arguments.value(3), arguments.value(4) != "bare");
    return Compare(arguments.size() > 1 ? std::max(1, arguments.at(1).toInt()) : 5);
}
