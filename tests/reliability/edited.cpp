// The program, with a person in it who edits, places and saves without a pause until
// the program is killed: quelmar_edited SUBTITLES SAVED SEED; with an empty SAVED nothing
// is saved. After each edit a line
// goes to standard output: its number, the moment, and the titles' fingerprint. With a
// fourth argument, the handler of that edit fails; the report that the person then reads
// goes to standard error.

#include "app/application.h"
#include "app/program.h"
#include "base/runtimeerror.h"
#include "editing/shift.h"
#include "editing/stretch.h"
#include "model/step.h"
#include "tests/windows/fakeplayer.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <unistd.h>

namespace {

constexpr int SaveEvery = 100;

class Person {
  public:
    Person(Program& program, FakePlayer& player, QString saved, unsigned seed, int failingEdit)
        : m_window(program.Window())
        , m_player(player)
        , m_saved(std::move(saved))
        , m_random(seed)
        , m_failingEdit(failingEdit) {
        m_act.setSingleShot(true);
        QObject::connect(&m_act, &QTimer::timeout, &m_act, [this] { Act(); });
        QObject::connect(&m_answer, &QTimer::timeout, &m_answer, [this] { Answer(); });
        m_answer.start(5);
    }

    void Begin(const QString& subtitles) {
        m_window.OpenFiles(QCoreApplication::applicationFilePath(), subtitles);
        m_player.Play();
        m_act.start(0);
    }

  private:
    int Random(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }

    void Act() {
        ++m_edit;
        switch (Random(5)) {
        case 0:
            Place();
            break;
        case 1:
            m_window.Subt.Insert(2 + Random(m_window.Subt.Count()), 5, 6, "inserted");
            break;
        case 2:
            m_window.Subt.Delete(2 + Random(m_window.Subt.Count() - 1));
            break;
        case 3:
            ShiftOrGoBack();
            break;
        default:
            m_window.Subt.StartTime(1 + Random(m_window.Subt.Count()), Random(1000) / 7.0);
        }
        m_window.Subt.StartTime(1, 1);
        m_window.Subt.Text(1, "edit " + std::to_string(m_edit));
        // Some of the program's ways to change titles do not set its mark.
        m_window.document().SubtitlesChanged = Random(2) == 0;
        Tell();
        if (m_edit == m_failingEdit)
            throw RuntimeError(RuntimeError::Number::Overflow);
        if (!m_saved.isEmpty() && m_edit % SaveEvery == 0)
            m_window.findChild<QAbstractButton*>("cmdSave")->click();
        m_act.start(Random(12));
    }

    /// A step that keeps a version, and now and then the way back to one.
    void ShiftOrGoBack() {
        if (Random(4) == 0)
            return m_window.document().GoBack(static_cast<std::size_t>(Random(3)));
        const Step step(m_window.Subt, "Shift", Step::Undo::Emptied);
        ShiftTitles(m_window.Subt, AllTitles(m_window.Subt), 0.1);
    }

    void Place() {
        m_player.CurrentPosition(10 + Random(2000));
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier, " ");
            QCoreApplication::sendEvent(&m_window, &event);
            m_player.Advance(0.7);
        }
    }

    // Written with one call: a killed program leaves no half of a line behind.
    void Tell() const {
        const auto moment = std::chrono::duration_cast<std::chrono::milliseconds>(
                                std::chrono::steady_clock::now().time_since_epoch())
                                .count();
        char line[96];
        const int length = std::snprintf(
            line, sizeof line, "%d %lld %" PRIu64 "\n", m_edit, static_cast<long long>(moment),
            RecoveryBody(m_window.Subt, m_window.Notes()).TitlesFingerprint());
        if (::write(STDOUT_FILENO, line, static_cast<std::size_t>(length)) != length)
            std::_Exit(2);
    }

    void Answer() const {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
            // What is selected in the list counts more than what is typed.
            dialog->findChild<QListView*>("listView")->clearSelection();
            dialog->findChild<QLineEdit*>("fileNameEdit")->setText(m_saved);
            auto* save = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
            save->setEnabled(true);
            // Outside of this timer, which answers the question that follows.
            QTimer::singleShot(0, save, &QAbstractButton::click);
        } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            auto* yes = box->button(QMessageBox::Yes);
            if (yes == nullptr)
                std::fputs(box->text().toUtf8().constData(), stderr);
            (yes != nullptr ? yes : box->button(QMessageBox::Ok))->click();
        }
    }

    frmQuelmar& m_window;
    FakePlayer& m_player;
    const QString m_saved;
    std::mt19937 m_random;
    QTimer m_act;
    QTimer m_answer;
    const int m_failingEdit;
    int m_edit = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Application application(argc, argv);
    const QStringList arguments = Application::arguments();
    auto player = std::make_unique<FakePlayer>();
    FakePlayer& playing = *player;
    playing.MediaLength = 5000;
    Program program(std::make_unique<frmQuelmar>(std::move(player)));
    Person person(program, playing, arguments.value(2), arguments.value(3).toUInt(),
                  arguments.value(4).toInt());
    return program.Run([&] { person.Begin(arguments.value(1)); });
}
