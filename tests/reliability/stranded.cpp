// The program with a person in it whose share dies: quelmar_stranded all|save|restore FILM
// SUBTITLES OTHER TARGET LOCAL DEAD. Film, subtitles and another subtitle file lie on the share.
//
// all: edits, and when the share is dead (access("/quelmar/faults", 0) kills it, or there is
// the file DEAD) tries to open the other file, saves to LOCAL, edits again and leaves by the
// Exit button. save: edits and saves to TARGET; the share dies when the writing begins; then
// leaves. restore: the share is dead from the start; takes the work back that is offered. Waiting
// windows are cancelled, questions answered with No.
//
// Says on standard output what went wrong, how long the window stood still at most, and
// "leaving" when the Exit button is pressed.

#include "app/application.h"
#include "app/program.h"
#include "mainwindow/frmQuelmar.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <unistd.h>

namespace {

using std::chrono::milliseconds;

constexpr auto LongestOpening = std::chrono::seconds(30);
constexpr auto Watching = milliseconds(400);

/// How long the window's thread had no time for a timer.
class Heart {
  public:
    void Start() {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                         [this] { m_longest = std::max(m_longest, m_since.restart()); });
        m_since.start();
        m_timer.start(5);
    }
    qint64 Longest() const { return std::max(m_longest, m_since.elapsed()); }

  private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

class Person {
  public:
    explicit Person(const QStringList& arguments)
        : m_all(arguments.value(1) == "all")
        , m_restores(arguments.value(1) == "restore")
        , m_other(arguments.value(4))
        , m_target(arguments.value(5))
        , m_local(arguments.value(6))
        , m_dead(arguments.value(7)) {
        QObject::connect(&m_answer, &QTimer::timeout, &m_answer, [this] { Answer(); });
        m_answer.start(20);
        QTimer::singleShot(0, &m_answer, [this] { Begin(); });
    }

  private:
    static void WaitFor(milliseconds most, const std::function<bool()>& there) {
        QElapsedTimer waited;
        waited.start();
        while (!there() && waited.elapsed() < most.count())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    static void Expect(bool right, const char* what) {
        if (!right)
            std::printf("wrong: %s\n", what);
    }

    void Begin() {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* found = qobject_cast<frmQuelmar*>(window))
                m_window = found;
        if (m_window == nullptr)
            return QTimer::singleShot(20, &m_answer, [this] { Begin(); });
        if (m_restores)
            m_heart.Start();
        WaitFor(LongestOpening,
                [this] { return m_window->Subt.Count() > 0 && (m_window->AVIFileOK || !m_all); });
        Expect(m_window->Subt.Count() > 0, "no titles");
        if (m_restores) {
            Expect(m_window->Subt.Text(1) == "kept", "not restored");
            WaitFor(Watching, [] { return false; });
        } else {
            Edit("edited");
            m_all ? Live() : Save();
        }
        std::printf("stood still for %lld ms\nleaving\n",
                    static_cast<long long>(m_heart.Longest()));
        std::fflush(stdout);
        m_window->findChild<QAbstractButton*>("cmdExit")->click();
    }

    void Edit(const char* text) {
        m_window->Subt.Text(1, text);
        m_window->document().SubtitlesChanged = true;
        WaitFor(Watching, [] { return false; });
    }

    void Live() {
        Expect(m_window->AVIFileOK, "no film");
        m_window->findChild<QAbstractButton*>("mpPlay")->click();
        WaitFor(Watching, [] { return false; });
        std::printf("opened\n");
        std::fflush(stdout);
        static_cast<void>(!access("/quelmar/faults", 0));
        WaitFor(LongestOpening, [this] { return QFileInfo::exists(m_dead); });
        m_heart.Start();
        WaitFor(Watching, [] { return false; });
        m_window->findChild<QLineEdit*>("txtSRT")->setText(m_other);
        Expect(m_window->Subt.Text(1) == "edited", "other titles");
        m_window->findChild<QLineEdit*>("txtAVI")->setText(m_other + ".avi");
        m_saved = m_local;
        m_window->findChild<QAbstractButton*>("cmdSave")->click();
        Expect(!m_window->document().SubtitlesChanged, "not saved elsewhere");
        Edit("again");
    }

    void Save() {
        QObject::connect(m_window, &frmQuelmar::FileEmptying, m_window, [this] {
            static_cast<void>(!access("/quelmar/faults", 0));
            m_heart.Start();
        });
        m_saved = m_target;
        m_window->findChild<QAbstractButton*>("cmdSave")->click();
        Expect(m_window->document().SubtitlesChanged == m_complained, "the mark of changes");
    }

    void Answer() {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal == nullptr || modal == m_answered)
            return;
        m_answered = modal;
        if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
            dialog->findChild<QListView*>("listView")->clearSelection();
            dialog->findChild<QLineEdit*>("fileNameEdit")->setText(m_saved);
            auto* save = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
            save->setEnabled(true);
            QTimer::singleShot(0, save, &QAbstractButton::click);
        } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            QAbstractButton* answer = box->button(QMessageBox::No);
            if (box->text().contains(" already exists."))
                answer = box->button(QMessageBox::Yes);
            if (box->objectName() == "RecoveryQuestion")
                answer = box->buttons().constFirst();
            if (answer == nullptr) {
                m_complained = true;
                answer = box->buttons().constFirst();
            }
            QTimer::singleShot(0, answer, &QAbstractButton::click);
        } else if (auto* cancel = modal->findChild<QAbstractButton*>("cmdCancel")) {
            QTimer::singleShot(0, cancel, &QAbstractButton::click);
        }
    }

    const bool m_all;
    const bool m_restores;
    const QString m_other;
    const QString m_target;
    const QString m_local;
    const QString m_dead;
    QTimer m_answer;
    Heart m_heart;
    frmQuelmar* m_window = nullptr;
    QWidget* m_answered = nullptr;
    QString m_saved;
    bool m_complained = false;
};

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QUELMAR_AUDIO", "null");
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Application application(argc, argv);
    const QStringList arguments = Application::arguments();
    Person person(arguments);
    const QString what = arguments.value(1);
    return RunProgram(what == "all"    ? arguments.mid(2, 2)
                      : what == "save" ? arguments.mid(3, 1)
                                       : QStringList());
}
