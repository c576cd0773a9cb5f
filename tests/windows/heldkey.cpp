// Holds the space bar in the real window through an X server that repeats held keys,
// as every X server does: quelmar_held_key. Fails unless the title lasts from the
// press to the release.

#include "mainwindow/frmQuelmar.h"
#include "tests/windows/fakeplayer.h"
#include "tests/windows/xkeys.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <cstdlib>

namespace {

/// Servers begin to repeat after 0.66 s.
constexpr int HoldMilliseconds = 1500;
constexpr int LeastRepeats = 5;
/// Seconds that a busy machine may take to hand an event over.
constexpr double Slack = 1;

class RepeatCount : public QObject {
  public:
    int presses = 0;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        presses += watched->isWindowType() && event->type() == QEvent::KeyPress ? 1 : 0;
        return false;
    }
};

void WriteTitles(const QString& name) {
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return;
    for (int i = 1; i <= 9; ++i)
        file.write("1\n00:00:00,001 --> 00:00:00,002\nText\n\n");
}

int Complain(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    return EXIT_FAILURE;
}

int Hold() {
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    qputenv("XDG_STATE_HOME", home.path().toUtf8());
    WriteTitles(home.filePath("film.srt"));
    XKeys keys;
    if (!keys.Ready())
        return Complain("there is no X server that can be driven");

    auto owned = std::make_unique<FakePlayer>();
    FakePlayer& player = *owned;
    frmQuelmar window(std::move(owned));
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return Complain("the window does not show");
    window.OpenFiles(QCoreApplication::applicationFilePath(), home.filePath("film.srt"));
    window.findChild<QRadioButton*>("optPosition")->click();
    player.Play();
    window.activateWindow();
    window.setFocus();
    if (!QTest::qWaitForWindowActive(&window))
        return Complain("the window does not get the keyboard");

    RepeatCount count;
    QCoreApplication::instance()->installEventFilter(&count);
    player.Advance(10);
    keys.Space(true);
    QTest::qWait(HoldMilliseconds);
    player.Advance(5);
    keys.Space(false);
    QTest::qWait(300);

    if (count.presses < LeastRepeats)
        return Complain("the server did not repeat the key");
    const SUBTITLES& titles = window.Subt;
    std::printf("%d presses; %.3f to %.3f, then %.3f to %.3f\n", count.presses, titles.StartTime(1),
                titles.EndTime(1), titles.StartTime(2), titles.EndTime(2));
    // The age of the events is taken off.
    const auto at = [](double time, double position) {
        return time > position - Slack && time <= position;
    };
    const bool one = at(titles.StartTime(1), 10) && at(titles.EndTime(1), 15);
    const bool noMore = titles.StartTime(2) == 0.001 && titles.EndTime(2) == 0.002;
    return one && noMore ? EXIT_SUCCESS : Complain("not one press and one release");
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    return Hold();
}
