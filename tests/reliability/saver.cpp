// The program with a person in it who opens subtitles, edits them when asked to, saves
// them and is gone: quelmar_saver SUBTITLES SAVED edited|unedited. When the save begins it
// calls access("/quelmar/faults", 0), from which on calls may be made to fail (see
// faults.cpp). Ends with 0 when all was well for that person: the file was saved, or the
// program said that it was not and took the titles for unsaved.

#include "app/application.h"
#include "app/program.h"
#include "tests/windows/fakeplayer.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

class Person {
  public:
    Person(Program& program, const QStringList& arguments)
        : m_program(program)
        , m_subtitles(arguments.value(1))
        , m_saved(arguments.value(2))
        , m_edits(arguments.value(3) == "edited") {
        QObject::connect(&m_answer, &QTimer::timeout, &m_answer, [this] { Answer(); });
        m_answer.start(5);
    }

    void Work() {
        frmQuelmar& window = m_program.Window();
        window.OpenFiles({}, m_subtitles);
        if (m_edits) {
            window.Subt.Text(1, "edited");
            window.document().SubtitlesChanged = true;
            m_program.Copies().Flush();
        }
        window.findChild<QAbstractButton*>("cmdSave")->click();
        const bool changed = window.document().SubtitlesChanged;
        m_program.Copies().Flush();
        // Whatever becomes of the program now, the work is where it is.
        std::_Exit(changed == m_complained ? EXIT_SUCCESS : EXIT_FAILURE);
    }

  private:
    void Answer() {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
            if (m_begun)
                return;
            m_begun = true;
            // What is selected in the list counts more than what is typed.
            dialog->findChild<QListView*>("listView")->clearSelection();
            dialog->findChild<QLineEdit*>("fileNameEdit")->setText(m_saved);
            auto* save = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
            save->setEnabled(true);
            static_cast<void>(!access("/quelmar/faults", 0));
            // Outside of this timer, which answers the questions that follow.
            QTimer::singleShot(0, save, &QAbstractButton::click);
        } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            QAbstractButton* answer = box->button(QMessageBox::Yes);
            // Where the file's state could not be read, it may seem to have changed.
            for (QAbstractButton* button : box->buttons())
                if (button->text() == QLatin1String("Save over it"))
                    answer = button;
            if (answer == nullptr) {
                m_complained = true;
                answer = box->button(QMessageBox::Ok);
            }
            QTimer::singleShot(0, answer, &QAbstractButton::click);
        }
    }

    Program& m_program;
    const QString m_subtitles;
    const QString m_saved;
    const bool m_edits;
    QTimer m_answer;
    bool m_begun = false;
    bool m_complained = false;
};

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Application application(argc, argv);
    Program program(std::make_unique<frmQuelmar>(std::make_unique<FakePlayer>()));
    Person person(program, Application::arguments());
    return program.Run([&] { person.Work(); });
}
