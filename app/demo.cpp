#include "app/demo.h"

#include "mainwindow/frmQuelmar.h"
#include "model/times.h"
#include "platform/errorgate.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

constexpr int SlowMachine = 20000;
constexpr const char* SavedName = "placed.srt";

// When the demonstration holds the key, in seconds of the film: while the voice speaks.
struct Hold {
    double from;
    double to;
};
constexpr Hold Holds[] = {{2.0, 4.32}, {5.28, 7.32}, {8.92, 11.6}};
// How far a placement may lie from what the window showed, on a machine under load.
constexpr double Tolerance = 0.5;

void Say(const QString& text) {
    std::puts(text.toLocal8Bit().constData());
    std::fflush(stdout);
}

/// The sample film and its subtitles: installed beside the program, or in the source
/// tree that the program was built in or is started from.
QDir Samples() {
    QStringList tried{QCoreApplication::applicationDirPath() + "/../share/quelmar/samples"};
    QDir folder(QCoreApplication::applicationDirPath());
    do {
        tried << folder.filePath("samples");
    } while (folder.cdUp());
    tried << QDir::current().filePath("samples");
    for (const QString& path : std::as_const(tried))
        if (QFileInfo::exists(path + "/sample.avi"))
            return QDir(QDir::cleanPath(path));
    throw std::runtime_error("the samples are neither in share/quelmar/samples beside the "
                             "program nor in a folder above it or the current one");
}

class Demo {
  public:
    explicit Demo(QString folder)
        : m_folder(std::move(folder)) {}

    void Run() {
        if (!QDir().mkpath(m_folder))
            throw std::runtime_error("cannot make the folder");
        m_window.show();
        Open();
        Position();
        for (const Hold& hold : Holds)
            Place(hold);
        Press("cmdEdit");
        Picture("editor");
        Save();
        m_window.close();
    }

  private:
    template <typename T>
    T& Control(const char* name) const {
        if (auto* control = m_window.findChild<T*>(QString::fromLatin1(name)))
            return *control;
        throw std::runtime_error(std::string("there is no ") + name);
    }

    void Press(const char* name) { Control<QAbstractButton>(name).click(); }

    static void WaitFor(const char* what, const std::function<bool()>& done) {
        QElapsedTimer waited;
        waited.start();
        while (!done()) {
            if (waited.hasExpired(SlowMachine))
                throw std::runtime_error(std::string("waited in vain for ") + what);
            QApplication::processEvents(QEventLoop::AllEvents, 5);
        }
    }

    double Position(const char* box) const {
        return ParseTime(Control<QLineEdit>(box).text().toStdString());
    }
    double Now() const { return Position("txtTime"); }

    void Picture(const QString& name) const {
        QElapsedTimer settled;
        settled.start();
        WaitFor("a picture", [&] { return settled.hasExpired(300); });
        Grab(name);
    }

    void Grab(const QString& name) const {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (!window->isVisible() || window->objectName().isEmpty())
                continue;
            const QString file =
                QStringLiteral("%1/%2-%3.png").arg(m_folder, name, window->objectName());
            if (!window->grab().save(file))
                throw std::runtime_error("cannot save a picture");
            Say("picture: " + QFileInfo(file).fileName());
        }
    }

    void Open() {
        const QDir samples = Samples();
        const QString film = samples.filePath("sample.avi");
        const QString subtitles = samples.filePath("sample-late.srt");
        Control<QLineEdit>("txtAVI").setText(film);
        Control<QLineEdit>("txtSRT").setText(subtitles);
        WaitFor("the film", [this] { return m_window.AVIFileOK; });
        if (m_window.Subt.Count() < 3)
            throw std::runtime_error("the sample subtitles were not read");
        Say(QStringLiteral("opened %1 and %2: %3 titles")
                .arg(film, subtitles)
                .arg(m_window.Subt.Count()));
        Picture("opened");
    }

    void Position() {
        Control<QRadioButton>("optPosition").click();
        Press("mpPlay");
        WaitFor("playback", [this] { return Now() > 0.2; });
        Say("playing");
    }

    void Key(QEvent::Type type) {
        QWidget* receiver = QApplication::focusWidget();
        auto* event = new QKeyEvent(type, Qt::Key_Space, Qt::NoModifier, " ");
        QApplication::postEvent(receiver != nullptr ? receiver : &m_window, event);
        QApplication::sendPostedEvents();
    }

    void Place(const Hold& hold) {
        const std::int32_t title = ++m_placed;
        const double pressed = KeyAt(QEvent::KeyPress, hold.from);
        const double released = KeyAt(QEvent::KeyRelease, hold.to);
        const double start = m_window.Subt.StartTime(title);
        const double end = m_window.Subt.EndTime(title);
        if (std::abs(start - pressed) > Tolerance || std::abs(end - released) > Tolerance)
            throw std::runtime_error("a title was not placed where the key was held");
        Say(QStringLiteral("placed title %1 from %2 to %3")
                .arg(title)
                .arg(QString::fromStdString(FormatTime(start)),
                     QString::fromStdString(FormatTime(end))));
        // At once: the next line is soon to be spoken.
        Grab(QStringLiteral("placed%1").arg(title));
    }

    /// Answers the position when the key went, which on a busy machine may be later.
    double KeyAt(QEvent::Type type, double position) {
        WaitFor("the film to come there", [&] { return Now() >= position; });
        const double now = Now();
        Key(type);
        return now;
    }

    void Save() {
        const QString name = QDir(m_folder).absoluteFilePath(SavedName);
        QFile::remove(name);
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, &answer, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr)
                return;
            answer.stop();
            // A text put into the box would leave the file that is selected in the list, and
            // the selection leaves a box that has the focus.
            dialog->selectFile(name);
            dialog->findChild<QLineEdit*>("fileNameEdit")->setText(name);
            Picture("save");
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        });
        answer.start(50);
        Press("cmdSave");
        if (QFileInfo(name).size() == 0)
            throw std::runtime_error("the subtitles were not saved");
        Say("saved " + name);
    }

    QString m_folder;
    frmQuelmar m_window;
    std::int32_t m_placed = 0;
};

} // namespace

int RunDemo(const QString& folder) {
    // The settings of the user, the sound and the dialogs of the desktop take no part.
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settings.path()));
    qputenv("QUELMAR_AUDIO", "null");
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    InstallErrorReporter([&](const std::string& report) {
        Say("failed: " + QString::fromStdString(report));
        std::_Exit(EXIT_FAILURE);
    });
    Guarded([&] { Demo(folder).Run(); });
    return EXIT_SUCCESS;
}
