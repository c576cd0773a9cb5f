// Measures the lane: one whole repaint at every zoom, a frame of a drag, and the share of
// a core that following a film takes. `lane [WIDTH [SECONDS]]`: its width (3840) and how
// long to follow (10 s). The figures of a real window need an X server.

#include "lane/lane.h"
#include "sound/soundmap.h"
#include "tests/windows/fakeplayer.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTemporaryFile>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr double FilmLength = 7200;
constexpr int Height = 200;
constexpr int Repaints = 300;

/// A film that plays by the computer's clock.
class RunningPlayer : public FakePlayer {
  public:
    using FakePlayer::CurrentPosition;
    double CurrentPosition() const override {
        const double since =
            State() == Playing ? static_cast<double>(m_since.nsecsElapsed()) / 1e9 : 0;
        return FakePlayer::CurrentPosition() + since;
    }
    void Run() {
        m_since.start();
        Play();
    }

  private:
    QElapsedTimer m_since;
};

std::shared_ptr<SoundMap> Sound() {
    auto map = std::make_shared<SoundMap>(FilmLength);
    for (std::size_t number = 0; number < map->Pages(); ++number) {
        SoundPage page;
        for (std::size_t i = 0; i < page.least.size(); ++i) {
            const auto level =
                static_cast<float>(static_cast<double>((i * 37 + number * 11) % 101) / 100);
            page.least[i] = PackSample(-level);
            page.greatest[i] = PackSample(level * 0.8F);
            page.loudness[i] = PackPower(level * level / 5);
        }
        SpeechPage speech{};
        for (std::size_t i = 0; i < speech.fine.size(); ++i)
            speech.fine[i] = (i / 100 + number) % 2 == 0 ? 255 : 0;
        map->Add(number, page);
        map->Add(number, speech);
    }
    return map;
}

void FillTitles(Lane& lane, int count) {
    std::vector<double> starts;
    std::vector<double> ends;
    const double step = FilmLength / count;
    for (int i = 0; i < count; ++i) {
        starts.push_back(i * step);
        // Each seventh title overlaps the next one.
        ends.push_back((i + (i % 7 == 0 ? 1.3 : 0.8)) * step);
    }
    lane.Titles(std::move(starts), std::move(ends));
    lane.Words([](std::int32_t title) {
        return QStringLiteral("- What did he say, number %1?\n- Nothing of note.").arg(title);
    });
}

/// Of values in order.
double Share(const std::vector<double>& values, double share) {
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

void Print(const std::string& what, std::vector<double> milliseconds) {
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("%-52s %8.2f %8.2f %8.2f\n", what.c_str(), Share(milliseconds, 0.5),
                Share(milliseconds, 0.99), milliseconds.back());
    std::fflush(stdout);
}

double ProcessorSeconds(clockid_t clock = CLOCK_PROCESS_CPUTIME_ID) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// The work of this thread, whatever else the machine does.
double Timed(const std::function<void()>& act) {
    const double before = ProcessorSeconds(CLOCK_THREAD_CPUTIME_ID);
    act();
    return (ProcessorSeconds(CLOCK_THREAD_CPUTIME_ID) - before) * 1000;
}

/// Every repaint shows another part, and nothing of it has been painted before.
void MeasureRepaints(Lane& lane, RunningPlayer& player, int titles) {
    for (const double span : {2.0, 20.0, 120.0, 600.0, FilmLength}) {
        std::vector<double> times;
        QImage image(lane.size(), QImage::Format_RGB32);
        for (int i = 0; i < Repaints; ++i) {
            player.FakePlayer::CurrentPosition(
                std::fmod(i * 617.3, std::max(1.0, FilmLength - span)));
            while (lane.View().Span() > span * 1.01 || lane.View().Span() < span * 0.99) {
                const bool in = lane.View().Span() > span;
                QKeyEvent key(QEvent::KeyPress, in ? Qt::Key_Plus : Qt::Key_Minus, {});
                const double before = lane.View().Span();
                QCoreApplication::sendEvent(&lane, &key);
                if (lane.View().Span() == before || (lane.View().Span() > span) != in)
                    break;
            }
            lane.WordsChanged();
            times.push_back(Timed([&] { lane.render(&image); }));
        }
        Print("repaint, " + std::to_string(titles) + " titles, " +
                  std::to_string(std::lround(lane.View().Span())) + " s in sight",
              times);
    }
}

void Mouse(Lane& lane, QEvent::Type type, double x) {
    const QPointF place(x, lane.height() / 4.0);
    QMouseEvent event(type, place, lane.mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QCoreApplication::sendEvent(&lane, &event);
}

/// From the mouse's move to the picture that shows the block there.
void MeasureDrag(Lane& lane, RunningPlayer& player) {
    player.FakePlayer::CurrentPosition(3600);
    QImage image(lane.size(), QImage::Format_RGB32);
    const double begin = lane.View().X(lane.Shown().Start(lane.Shown().Count() / 2 + 1)) + 20;
    Mouse(lane, QEvent::MouseButtonPress, begin);
    std::vector<double> times;
    for (int i = 0; i < Repaints; ++i)
        times.push_back(Timed([&] {
            Mouse(lane, QEvent::MouseMove, begin + 5 + i % 40);
            lane.render(&image);
        }));
    Mouse(lane, QEvent::MouseButtonRelease, begin);
    Print("a frame of a drag", times);
}

void MeasureFollowing(Lane& lane, RunningPlayer& player, LaneView::Follow how, const char* name,
                      int seconds) {
    lane.Follow(how);
    player.FakePlayer::CurrentPosition(1000);
    player.Run();
    QEventLoop loop;
    QTimer::singleShot(1000, &loop, &QEventLoop::quit);
    loop.exec();
    const double before = ProcessorSeconds();
    QElapsedTimer timer;
    timer.start();
    QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
    loop.exec();
    const double share =
        (ProcessorSeconds() - before) / (static_cast<double>(timer.nsecsElapsed()) / 1e9);
    std::printf("%-52s %8.2f %% of a core\n",
                (std::string("following ") + name + ", " +
                 std::to_string(std::lround(lane.View().Span())) + " s in sight")
                    .c_str(),
                share * 100);
    std::fflush(stdout);
    player.Pause();
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const int width = argc > 1 ? std::max(100, std::atoi(argv[1])) : 3840;
    const int seconds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 10;
    QTemporaryFile film;
    if (!film.open())
        return 1;
    RunningPlayer player;
    player.MediaLength = FilmLength;
    Lane lane(player);
    player.FileName(film.fileName());
    lane.resize(width, Height);
    lane.Sound(Sound());
    lane.show();
    QCoreApplication::processEvents();
    std::printf("%d x %d pixels on %s\n%-52s %8s %8s %8s\n", width, Height,
                qPrintable(QGuiApplication::platformName()), "milliseconds", "median", "99 %",
                "worst");
    for (const int titles : {1500, 32700}) {
        FillTitles(lane, titles);
        MeasureRepaints(lane, player, titles);
    }
    lane.hide();
    Lane held(player);
    held.resize(width, Height);
    held.Sound(Sound());
    FillTitles(held, 32700);
    held.show();
    QCoreApplication::processEvents();
    MeasureDrag(held, player);
    for (const int titles : {1500, 32700}) {
        FillTitles(held, titles);
        MeasureFollowing(held, player, LaneView::Follow::Smooth, "smoothly", seconds);
        MeasureFollowing(held, player, LaneView::Follow::ByPage, "by page", seconds);
    }
}
