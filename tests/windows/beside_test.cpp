#include "platform/beside.h"

#include "tests/windows/drive.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <stdexcept>

namespace {

/// Work that lasts until somebody lets it go.
struct Gate {
    std::shared_ptr<std::promise<void>> promise = std::make_shared<std::promise<void>>();
    std::shared_future<void> future = promise->get_future().share();

    std::function<void()> Work() const {
        return [future = future] {
            future.wait();
        };
    }
};

/// Does something to the window that waits, as soon as it is there.
class WhenWaiting : public QTimer {
  public:
    explicit WhenWaiting(std::function<void(QWidget& window)> act) {
        connect(this, &QTimer::timeout, this, [this, act = std::move(act)] {
            QWidget* modal = QApplication::activeModalWidget();
            if (modal == nullptr || modal->objectName() != "frmWaiting")
                return;
            stop();
            act(*modal);
        });
        start(5);
    }
};

TEST(Beside, WhatIsQuickShowsNoWindow) {
    const WhenWaiting never([](QWidget&) { FAIL(); });
    EXPECT_EQ(AskBeside<int>(nullptr, "/a", "a", [] { return 7; }), 7);
    EXPECT_THROW(RunBeside(nullptr, "/a", "a", [] { throw std::runtime_error("x"); }),
                 std::runtime_error);
}

TEST(Beside, WhatIsSlowIsWaitedFor) {
    const Gate gate;
    int ticks = 0;
    QTimer others;
    QObject::connect(&others, &QTimer::timeout, [&] { ++ticks; });
    others.start(1);
    const WhenWaiting release([&](QWidget& window) {
        EXPECT_EQ(Child<QLabel>(window, "Label1").text(), "Waiting for film.srt");
        QTest::qWait(50);
        gate.promise->set_value();
    });
    EXPECT_TRUE(RunBeside(nullptr, "/a", "film.srt", gate.Work()));
    EXPECT_GT(ticks, 0);
}

TEST(Beside, WhatNeverAnswersCanBeGivenUp) {
    const Gate gate;
    {
        const WhenWaiting cancel(
            [](QWidget& window) { Child<QPushButton>(window, "cmdCancel").click(); });
        EXPECT_FALSE(RunBeside(nullptr, "/dead", "film.srt", gate.Work()));
    }
    // Until it answers, nothing else is begun there, and nobody waits again.
    const WhenWaiting never([](QWidget&) { FAIL(); });
    bool begun = false;
    EXPECT_FALSE(RunBeside(nullptr, "/dead", "other.srt", [&] { begun = true; }));
    EXPECT_FALSE(begun);
    EXPECT_TRUE(RunBeside(nullptr, "/alive", "other.srt", [&] { begun = true; }));
    EXPECT_TRUE(begun);
    gate.promise->set_value();
    EXPECT_TRUE(QTest::qWaitFor([] { return RunBeside(nullptr, "/dead", "film.srt", [] {}); }));
}

} // namespace
