// Drives all windows of the program at random: quelmar_monkey [STEPS [SEED]]. A step is
// a click, a key, a text, a move of the player or of a window. Where the program would
// end (it was closed, or a run-time error was reported), it is started again, and after
// an error its work must be offered. Fails when the program ends in any other way.

#include "app/application.h"
#include "app/program.h"
#include "platform/errorgate.h"
#include "tests/windows/fakeplayer.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

/// What goes from one run of the program to the next: a run ends by starting the next
/// in its place, so that nothing but the disk carries over.
struct Counts {
    int stepsLeft = 2000;
    unsigned seed = 1;
    int runs = 1;
    int errors = 0;
    /// Work must be offered at the start.
    bool expectOffer = false;
};

constexpr const char* Texts[] = {
    "",
    "0",
    "1",
    "-5",
    "abc",
    "1e999",
    "99999999999999999999",
    "25",
    "23.976",
    "00:00:05,000",
    "-00:00:05,000",
    "99:59:59,999",
    "00:00:00,0005",
    ":::,,,",
    "<i>slanted</i> {y:i} | /word/",
    "Il etait l'lle",
    "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80",
};

constexpr const char* Files[] = {
    "good.srt",    "good.smi",  "good.sub",  "late.txt",  "corrupt.srt",
    "corrupt.sub", "empty.txt", "blank.srt", "noise.smi", "missing.srt",
};

constexpr Qt::Key Keys[] = {
    Qt::Key_Space,  Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab,       Qt::Key_Backtab,
    Qt::Key_Delete, Qt::Key_Insert, Qt::Key_Left,   Qt::Key_Right,     Qt::Key_Up,
    Qt::Key_Down,   Qt::Key_Home,   Qt::Key_End,    Qt::Key_PageUp,    Qt::Key_PageDown,
    Qt::Key_A,      Qt::Key_I,      Qt::Key_L,      Qt::Key_0,         Qt::Key_5,
    Qt::Key_Slash,  Qt::Key_Comma,  Qt::Key_F1,     Qt::Key_F2,        Qt::Key_F3,
    Qt::Key_Z,      Qt::Key_Plus,   Qt::Key_Minus,  Qt::Key_Backspace,
};

constexpr int MostWaits = 1000;

void WriteFiles() {
    const auto write = [](const char* name, const QByteArray& bytes) {
        QFile file(QString::fromLatin1(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
    };
    QByteArray subRip;
    QByteArray microDvd;
    QByteArray sami = "<SAMI><BODY>\n";
    for (int i = 1; i <= 40; ++i) {
        subRip += QStringLiteral("%1\n00:00:%2,000 --> 00:00:%2,900\nLine %1\nsecond l/I\n\n")
                      .arg(i)
                      .arg(i, 2, 10, QChar('0'))
                      .toLatin1();
        microDvd +=
            QStringLiteral("{%1}{%2}Line|{y:i}two\n").arg(i * 25).arg(i * 25 + 20).toLatin1();
        sami += QStringLiteral(
                    "<SYNC Start=%1><P Class=A>Line<br>two\n<SYNC Start=%2><P Class=A>&nbsp;\n")
                    .arg(i * 1000)
                    .arg(i * 1000 + 900)
                    .toLatin1();
    }
    write("good.srt", subRip);
    write("late.txt", subRip);
    write("good.sub", microDvd);
    write("good.smi", sami + "</BODY></SAMI>\n");
    write("corrupt.srt", subRip.left(900) + "nonsense\nnonsense\n\n" + subRip);
    write("corrupt.sub", microDvd.left(300) + "{x}{y}\n" + microDvd);
    write("empty.txt", "\n\n\n");
    write("blank.srt", "");
    write("noise.smi", QByteArray::fromHex("00ff3c53414d493eff00fe7b7d3c3e2626").repeated(50));
    write("film.avi", "not really a film");
}

class Monkey {
  public:
    Monkey(Program& program, FakePlayer& player, Counts& counts)
        : m_window(program.Window())
        , m_player(player)
        , m_counts(counts)
        , m_random(counts.seed) {}

    void Begin() { Next(); }

  private:
    int Random(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }
    bool Chance(int percent) { return Random(100) < percent; }
    template <typename T, std::size_t SIZE>
    const T& Any(const T (&pool)[SIZE]) {
        return pool[static_cast<std::size_t>(Random(static_cast<int>(SIZE)))];
    }

    // Armed before each step, which may run an event loop of its own.
    void Next() {
        QTimer::singleShot(0, &m_window, [this] { Step(); });
    }

    void Step() {
        if (m_counts.stepsLeft == 0)
            return QCoreApplication::exit();
        Next();
        // Nobody is quick enough to act between the end of a dialog and the return to
        // whoever opened it.
        const QWidget* ended = m_modal;
        if (ended != nullptr && !ended->isVisible() && ++m_waits < MostWaits)
            return;
        m_waits = 0;
        m_modal = QApplication::activeModalWidget();
        --m_counts.stepsLeft;
        QWidget* target = QApplication::activePopupWidget();
        if (target == nullptr)
            target = QApplication::activeModalWidget();
        if (auto* dialog = qobject_cast<QFileDialog*>(target))
            return AnswerFileDialog(*dialog);
        if (auto* box = qobject_cast<QMessageBox*>(target))
            return AnswerMessage(*box);
        if (target == nullptr)
            target = AnyWindow();
        if (target == nullptr)
            return;
        if (Chance(10))
            return MovePlayer();
        if (Chance(2))
            return Rearrange(*target);
        Touch(*target);
    }

    QWidget* AnyWindow() {
        QWidgetList visible;
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible())
                visible << window;
        return visible.isEmpty() ? nullptr : visible[Random(static_cast<int>(visible.size()))];
    }

    void AnswerMessage(QMessageBox& box) {
        const auto buttons = box.buttons();
        buttons[Random(static_cast<int>(buttons.size()))]->click();
    }

    // Never by random clicks: a file dialog can rename and delete what is no business of ours.
    void AnswerFileDialog(QFileDialog& dialog) {
        auto* name = dialog.findChild<QLineEdit*>("fileNameEdit");
        if (Chance(30) || name == nullptr)
            return dialog.reject();
        const bool save = dialog.acceptMode() == QFileDialog::AcceptSave;
        name->setText(
            QDir::current().filePath(save ? (Chance(50) ? "out.srt" : "out.sub") : Any(Files)));
        auto* accept = dialog.findChild<QDialogButtonBox*>()->button(save ? QDialogButtonBox::Save
                                                                          : QDialogButtonBox::Open);
        accept->setEnabled(true);
        accept->click();
        if (dialog.isVisible() && QApplication::activeModalWidget() == &dialog)
            dialog.reject();
    }

    void MovePlayer() {
        switch (Random(5)) {
        case 0:
            return m_player.Play();
        case 1:
            return m_player.Pause();
        case 2:
            return m_player.Stop();
        case 3:
            return m_player.CurrentPosition(Random(700) - 50);
        default:
            return m_player.Advance(Random(5000) / 1000.0);
        }
    }

    void Rearrange(QWidget& window) {
        if (!window.isWindow())
            return;
        switch (Random(8)) {
        case 0:
            window.close();
            break;
        case 1:
            window.showMaximized();
            break;
        case 2:
            window.showNormal();
            break;
        default:
            window.resize(Random(2000), Random(1500));
        }
    }

    void Touch(QWidget& window) {
        QWidgetList controls{&window};
        for (auto* control : window.findChildren<QWidget*>())
            if (control->isVisible() && control->window() == window.window())
                controls << control;
        QWidget& control = *controls[Random(static_cast<int>(controls.size()))];
        // Most runs are to become long.
        if (control.objectName() == "cmdExit" && Chance(80))
            return;
        const int what = Random(100);
        if (what < 25 && Write(control))
            return;
        if (what < 50)
            return Type(control);
        Click(control);
    }

    bool Write(QWidget& control) {
        const QString text = QString::fromUtf8(Any(Texts));
        if (auto* line = qobject_cast<QLineEdit*>(&control)) {
            if (line->isReadOnly())
                return false;
            if (line->objectName() == "txtSRT")
                line->setText(QDir::current().filePath(Any(Files)));
            else if (line->objectName() == "txtAVI")
                line->setText(QDir::current().filePath(Chance(80) ? "film.avi" : "missing.avi"));
            else
                line->setText(text);
            return true;
        }
        if (auto* edit = qobject_cast<QPlainTextEdit*>(&control); edit && !edit->isReadOnly()) {
            edit->setPlainText(text);
            return true;
        }
        if (auto* combo = qobject_cast<QComboBox*>(&control); combo && combo->isEditable()) {
            combo->setEditText(text);
            return true;
        }
        return false;
    }

    void Type(QWidget& control) {
        const Qt::Key key = Any(Keys);
        const Qt::KeyboardModifiers modifiers = Chance(15)   ? Qt::ControlModifier
                                                : Chance(15) ? Qt::ShiftModifier
                                                             : Qt::NoModifier;
        const QString text = key < 128 ? QString(QChar(static_cast<char16_t>(key))) : QString();
        // The press may close its window.
        const QPointer<QWidget> alive = &control;
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text, Chance(5));
            QWidget* focused = QApplication::focusWidget();
            if (QWidget* receiver = focused != nullptr && Chance(70) ? focused : alive.data())
                QCoreApplication::sendEvent(receiver, &event);
        }
    }

    static void Mouse(const QPointer<QWidget>& control, QEvent::Type type, QPoint place,
                      Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {}) {
        if (!control)
            return;
        const Qt::MouseButtons held =
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
        QMouseEvent event(type, place, control->mapToGlobal(place), button, held, modifiers);
        QCoreApplication::sendEvent(control, &event);
    }

    void Click(QWidget& control) {
        const QPointer<QWidget> alive = &control;
        const QPoint place(Random(std::max(control.width(), 1)),
                           Random(std::max(control.height(), 1)));
        if (Chance(6)) {
            QContextMenuEvent menu(QContextMenuEvent::Mouse, place, control.mapToGlobal(place));
            QCoreApplication::sendEvent(&control, &menu);
            return;
        }
        const Qt::MouseButton button = Chance(7) ? Qt::RightButton : Qt::LeftButton;
        const Qt::KeyboardModifiers modifiers = Chance(10) ? Qt::ControlModifier : Qt::NoModifier;
        Mouse(alive, QEvent::MouseMove, place, Qt::NoButton);
        Mouse(alive, QEvent::MouseButtonPress, place, button, modifiers);
        Mouse(alive, QEvent::MouseButtonRelease, place, button, modifiers);
        if (Chance(10)) {
            Mouse(alive, QEvent::MouseButtonDblClick, place, button, modifiers);
            Mouse(alive, QEvent::MouseButtonRelease, place, button, modifiers);
        }
    }

    frmQuelmar& m_window;
    FakePlayer& m_player;
    Counts& m_counts;
    std::mt19937 m_random;
    QPointer<QWidget> m_modal;
    int m_waits = 0;
};

/// The next run in this one's place: what is held in memory, locks too, is gone.
[[noreturn]] void StartAgain(const Counts& counts, const char* program) {
    const std::string arguments[] = {std::to_string(counts.stepsLeft),
                                     std::to_string(counts.seed + 1),
                                     std::to_string(counts.runs + 1), std::to_string(counts.errors),
                                     std::to_string(counts.expectOffer ? 1 : 0)};
    std::vector<char*> list{const_cast<char*>(program)};
    for (const std::string& argument : arguments)
        list.push_back(const_cast<char*>(argument.c_str()));
    list.push_back(nullptr);
    ::execv("/proc/self/exe", list.data());
    std::_Exit(EXIT_FAILURE);
}

[[noreturn]] void Fail(const Counts& counts, const std::string& why) {
    std::printf("FAILED in run %d, %d steps before the end: %s\n", counts.runs, counts.stepsLeft,
                why.c_str());
    std::fflush(stdout);
    std::_Exit(EXIT_FAILURE);
}

bool IsRunTimeError(const std::string& report) {
    for (const char* number : {"6", "11", "13", "62"})
        if (report.starts_with(std::string("Run-time error '") + number + "':"))
            return true;
    return false;
}

/// Restores the first work that is offered.
bool TakeOffer(Program& program) {
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, &answer, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            for (QAbstractButton* button : box->buttons())
                if (button->text() == "Restore")
                    return button->click();
    });
    answer.start(5);
    return program.Copies().OfferOrphans();
}

int RunAll(int argc, char** argv, Counts& counts) {
    Application application(argc, argv);
    auto player = std::make_unique<FakePlayer>();
    FakePlayer& playing = *player;
    Program program(std::make_unique<frmQuelmar>(std::move(player)));
    InstallErrorReporter([&](const std::string& report) {
        if (!IsRunTimeError(report))
            Fail(counts, report);
        ++counts.errors;
        std::printf("%s\n", QString::fromStdString(report).simplified().toUtf8().constData());
        std::fflush(stdout);
        counts.expectOffer = program.Copies().Flush();
        StartAgain(counts, argv[0]);
    });
    Monkey monkey(program, playing, counts);
    program.Run([&] {
        if (!TakeOffer(program) && counts.expectOffer)
            Fail(counts, "the work of the run before was not offered");
        counts.expectOffer = false;
        monkey.Begin();
    });
    return counts.stepsLeft;
}

} // namespace

int main(int argc, char** argv) {
    const auto number = [&](int i, int byDefault) {
        return argc > i ? std::atoi(argv[i]) : byDefault;
    };
    Counts counts;
    counts.stepsLeft = number(1, counts.stepsLeft);
    counts.seed = static_cast<unsigned>(number(2, 1));
    counts.runs = number(3, counts.runs);
    counts.errors = number(4, counts.errors);
    counts.expectOffer = number(5, 0) != 0;
    if (argc <= 3) {
        QTemporaryDir folder;
        folder.setAutoRemove(false);
        QDir::setCurrent(folder.path());
        WriteFiles();
        qputenv("HOME", QFile::encodeName(folder.path()));
        qputenv("XDG_STATE_HOME", QFile::encodeName(folder.path()) + "/state");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()) + "/config");
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    if (RunAll(argc, argv, counts) > 0)
        StartAgain(counts, argv[0]);
    std::printf("The program ran %d times and reported %d run-time errors; the work was offered "
                "after each.\n",
                counts.runs, counts.errors);
    return QDir(QDir::currentPath()).removeRecursively() ? EXIT_SUCCESS : EXIT_FAILURE;
}
