// Plays a real film for a long time while somebody works on its titles without a pause:
// quelmar_soak [MINUTES OF FILM [SEED]]. Seeks, placements, edits, undo and openings of
// the list editor come at random. Prints the memory in use after each tenth of the time,
// and fails when it grew after the second tenth, or when an error was reported.

#include "app/application.h"
#include "listeditor/frmList.h"
#include "listeditor/titleview.h"
#include "mainwindow/frmQuelmar.h"
#include "platform/errorgate.h"
#include "player/mpvplayer.h"

#include <QAbstractButton>
#include <QEventLoop>
#include <QFile>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace {

constexpr int Titles = 1500;
constexpr int FilmSeconds = 60;
constexpr int ActionInterval = 40;
constexpr double Megabyte = 1024 * 1024;
/// What may come and go between two looks: pictures on their way, caches.
constexpr double Slack = 12;

double MegabytesInUse() {
    QFile status("/proc/self/statm");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    constexpr double page = 4096;
    return status.readAll().split(' ').value(1).toDouble() * page / Megabyte;
}

bool MakeFilm(const QString& name) {
    return QProcess::execute("ffmpeg", {"-v", "error", "-f", "lavfi", "-i",
                                        "testsrc=size=320x180:rate=25", "-f", "lavfi", "-i",
                                        "sine=frequency=440", "-t", QString::number(FilmSeconds),
                                        "-c:v", "mpeg4", "-g", "50", "-c:a", "mp3", name}) == 0;
}

void MakeTitles(SUBTITLES& titles) {
    titles.Clear();
    for (int i = 0; i < Titles; ++i)
        titles.Add(i * 0.04, i * 0.04 + 0.03, "Title " + std::to_string(i));
    titles.UndoEnabled(true);
}

class Worker {
  public:
    Worker(frmQuelmar& window, Player& player, unsigned seed)
        : m_window(window)
        , m_player(player)
        , m_random(seed) {}

    void ActOnce() {
        if (m_player.State() != Player::Playing)
            m_player.Play();
        static constexpr std::array Actions{
            &Worker::Seek,    &Worker::Place,   &Worker::Place, &Worker::OpenOrCloseEditor,
            &Worker::Command, &Worker::Command, &Worker::Pause};
        (this->*Actions[Below(Actions.size())])();
        ++m_actions;
    }

    long Actions() const { return m_actions; }

  private:
    std::size_t Below(std::size_t end) { return m_random() % end; }

    void Seek() {
        // A few at once, as a dragged slider makes them.
        for (std::size_t left = 1 + Below(4); left > 0; --left)
            m_player.CurrentPosition(static_cast<double>(Below(FilmSeconds - 2)));
    }

    void Place() {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent key(type, Qt::Key_Space, Qt::NoModifier, " ");
            QCoreApplication::sendEvent(&m_window, &key);
        }
    }

    frmList* Editor() {
        return m_window.document().ListWindowOpen ? m_window.findChild<frmList*>() : nullptr;
    }

    void OpenOrCloseEditor() {
        if (Below(4) != 0)
            return;
        if (frmList* list = Editor())
            list->close();
        else
            m_window.findChild<QAbstractButton*>("cmdEdit")->click();
    }

    void Command() {
        frmList* list = Editor();
        if (list == nullptr)
            return;
        const auto row = static_cast<int>(Below(static_cast<std::size_t>(list->RowCount())));
        list->LV->selectionModel()->select(list->LV->model()->index(row, 0),
                                           QItemSelectionModel::ClearAndSelect |
                                               QItemSelectionModel::Rows);
        static constexpr std::array Keys{"Sooner", "Later", "Shorter", "Longer",  "Insert",
                                         "Delete", "Undo",  "Undo",    "Spelling"};
        list->DoCommand(Keys[Below(Keys.size())]);
    }

    void Pause() { m_player.Pause(); }

    frmQuelmar& m_window;
    Player& m_player;
    std::mt19937 m_random;
    long m_actions = 0;
};

int Soak(double minutes, unsigned seed) {
    const QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    qputenv("XDG_STATE_HOME", folder.path().toUtf8());
    const QString film = folder.filePath("film.avi");
    if (!MakeFilm(film))
        return std::fputs("ffmpeg made no film\n", stderr), EXIT_FAILURE;

    int errors = 0;
    InstallErrorReporter([&errors](const std::string& report) {
        std::fprintf(stderr, "%s\n", report.c_str());
        ++errors;
    });
    auto made = MakeMpvPlayer();
    Player& player = *made;
    frmQuelmar window(std::move(made));
    window.show();
    window.OpenFiles(film, {});
    MakeTitles(window.Subt);
    window.findChild<QAbstractButton*>("cmdEdit")->setEnabled(true);
    window.findChild<QAbstractButton*>("optPosition")->click();
    constexpr double rate = 2;
    player.Rate(rate);

    Worker worker(window, player, seed);
    QTimer acting;
    QObject::connect(&acting, &QTimer::timeout, [&] { Guarded([&] { worker.ActOnce(); }); });
    acting.start(ActionInterval);

    double settled = 0;
    double last = 0;
    constexpr int parts = 10;
    for (int part = 1; part <= parts; ++part) {
        QEventLoop loop;
        QTimer::singleShot(
            std::chrono::milliseconds(static_cast<int>(minutes * 60'000 / rate / parts)), &loop,
            &QEventLoop::quit);
        loop.exec();
        last = MegabytesInUse();
        if (part == 2)
            settled = last;
        std::printf("%3d %%: %.1f MB, %ld actions, %d titles\n", part * 100 / parts, last,
                    worker.Actions(), static_cast<int>(window.Subt.Count()));
        std::fflush(stdout);
    }
    acting.stop();
    window.document().SubtitlesChanged = false;
    window.document().Saved();
    window.close();
    InstallErrorReporter(nullptr);
    const bool grew = last > settled + Slack;
    if (grew)
        std::printf("memory grew by %.1f MB\n", last - settled);
    std::printf("%d errors\n", errors);
    return errors > 0 || grew ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QUELMAR_AUDIO", "null");
    Application application(argc, argv);
    Application::setQuitOnLastWindowClosed(false);
    const QStringList arguments = Application::arguments();
    return Soak(arguments.size() > 1 ? arguments.at(1).toDouble() : 60,
                arguments.size() > 2 ? arguments.at(2).toUInt() : 1);
}
