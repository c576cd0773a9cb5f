// Measures the player's clock, its seeks and the placing of titles by key against
// the pictures that are drawn, and prints medians and worst cases.
// `quelmar_clock_benchmark [TITLES [PART]]`: the number of titles to place in each
// film (40), and the one part to measure (playing, busy, selection, seeks or
// placing). The placing needs an X server with a window manager; everything else runs
// on the offscreen platform too.

#include "mainwindow/frmQuelmar.h"
#include "player/mpvplayer.h"
#include "tests/windows/films.h"
#include "tests/windows/xkeys.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QRadioButton>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

double Seconds(Clock::time_point moment) {
    return std::chrono::duration<double>(moment.time_since_epoch()).count();
}

double Share(std::vector<double> values, double share) {
    if (values.empty())
        return NAN;
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

/// Errors in milliseconds, as median, 99 % and worst of their sizes.
void Print(const std::string& what, std::vector<double> errors, const std::string& note = {}) {
    for (double& error : errors)
        error = std::abs(error) * 1000;
    std::printf("%-46s %5zu %9.2f %9.2f %9.2f  %s\n", what.c_str(), errors.size(),
                Share(errors, 0.5), Share(errors, 0.99), Share(errors, 1), note.c_str());
    std::fflush(stdout);
}

/// When which picture was drawn: the truth about the media's time.
class Watcher {
  public:
    Watcher(Player& player, const Film& film)
        : m_times(film)
        , m_rate(player.Rate()) {
        m_connection = QObject::connect(&player, &Player::PictureDue, [this, &player] {
            const double moment = Seconds(Clock::now());
            if (!player.DrawPicture(m_image))
                return;
            m_number = Unwrapped(PictureNumber(m_image).value_or(-1));
            if (m_number > m_last)
                m_seen.push_back({moment, m_times.Begin(m_number) - m_rate * moment});
            m_last = m_number;
        });
    }
    ~Watcher() { Stop(); }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    int Number() const { return m_number; }
    void Stop() { QObject::disconnect(m_connection); }
    void Forget() { m_seen.clear(); }
    /// The media's time at a moment of steady playing, by the pictures around it:
    /// in minutes of playing the sound output may run off the computer's own clock.
    double At(double moment) const {
        std::vector<double> offsets;
        for (const Seen& seen : m_seen)
            if (std::abs(seen.moment - moment) < Around)
                offsets.push_back(seen.offset);
        if (offsets.empty())
            offsets.push_back(m_seen.back().offset);
        return Share(offsets, 0.5) + m_rate * moment;
    }

  private:
    struct Seen {
        double moment;
        double offset;
    };
    static constexpr double Around = 2;
    /// A picture carries so many numbers, and a long film begins again.
    static constexpr int Numbers = 4096;

    int Unwrapped(int number) const {
        while (number >= 0 && number < m_last - Numbers / 2)
            number += Numbers;
        return number;
    }

    PictureTimes m_times;
    double m_rate;
    QMetaObject::Connection m_connection;
    QImage m_image{FilmWidth, FilmHeight, QImage::Format_RGB32};
    std::vector<Seen> m_seen;
    int m_number = -1;
    int m_last = -1;
};

/// Lets the events of this time in as they come (`QTest::qWait` sleeps between them).
void Rest(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

bool Wait(const std::function<bool()>& done, std::chrono::milliseconds atMost = 5s) {
    const auto end = Clock::now() + atMost;
    while (!done() && Clock::now() < end)
        Rest(1ms);
    return done();
}

Film Make(const char* container, bool sound, int pictures, int group = 12) {
    Film film;
    film.container = QLatin1String(container);
    film.sound = sound;
    film.pictures = pictures;
    film.group = group;
    return film;
}

void MeasurePlaying(const char* container, bool sound, double rate) {
    const Film film = Make(container, sound, 500);
    const auto player = MakeMpvPlayer();
    player->FileName(MakeFilm(film));
    player->Rate(rate);
    Watcher watcher(*player, film);
    player->Play();
    Wait([&] { return player->CurrentPosition() > 1; });
    watcher.Forget();
    struct Reading {
        double moment;
        double position;
    };
    std::vector<Reading> readings;
    bool monotonic = true;
    const auto start = Clock::now();
    for (auto next = start; next < start + 5s; next += 1ms) {
        std::this_thread::sleep_until(next);
        readings.push_back({Seconds(Clock::now()), player->CurrentPosition()});
        const auto count = readings.size();
        monotonic = monotonic &&
                    (count < 2 || readings[count - 1].position >= readings[count - 2].position);
        QCoreApplication::processEvents();
    }
    std::vector<double> errors;
    errors.reserve(readings.size());
    for (const Reading& reading : readings)
        errors.push_back(reading.position - watcher.At(reading.moment));
    const QString what = QStringLiteral("position, %1%2, rate %3")
                             .arg(QLatin1String(container), sound ? QString() : " without sound")
                             .arg(rate);
    Print(what.toStdString(), errors, monotonic ? "monotonic" : "NOT MONOTONIC");
}

/// The moment of a key while the window is busy for 300 ms.
void MeasureBusyWindow() {
    const Film film = Make("avi", true, 500);
    const auto player = MakeMpvPlayer();
    player->FileName(MakeFilm(film));
    Watcher watcher(*player, film);
    player->Play();
    Wait([&] { return player->CurrentPosition() > 1; });
    watcher.Forget();
    // The pictures of a free window tell the truth for the busy one.
    Rest(2s);
    watcher.Stop();
    struct Press {
        double moment;
        double recorded;
    };
    std::vector<Press> presses;
    for (int i = 0; i < 20; ++i) {
        Rest(200ms);
        const auto pressed = Clock::now();
        std::this_thread::sleep_for(300ms);
        const auto age = std::chrono::round<std::chrono::milliseconds>(Clock::now() - pressed);
        presses.push_back({Seconds(pressed), player->PositionBefore(age)});
    }
    std::vector<double> errors;
    errors.reserve(presses.size());
    for (const Press& press : presses)
        errors.push_back(press.recorded - watcher.At(press.moment));
    Print("key while the window is busy for 300 ms", errors);
}

void MeasureSelectionEnd() {
    const Film film = Make("avi", true, 500);
    const auto player = MakeMpvPlayer();
    player->FileName(MakeFilm(film));
    Watcher watcher(*player, film);
    std::vector<double> errors;
    double first = 1;
    for (int i = 0; i < 25; ++i) {
        const double end = 1 + i * 0.317;
        player->SelectionStart(end - 0.3);
        player->SelectionEnd(end);
        player->CurrentPosition(end - 0.3);
        player->Play();
        Wait([&] { return player->State() != Player::Playing; });
        errors.push_back(player->CurrentPosition() - end);
        first = std::min(first, errors.back());
    }
    Print("selection end", errors, first >= 0 ? "never before it" : "BEFORE IT");
}

void MeasureSeeks(const char* container, int group) {
    const Film film = [&] {
        Film large = Make(container, true, 500, group);
        large.scale = 6;
        return large;
    }();
    const PictureTimes times(film);
    const auto player = MakeMpvPlayer();
    player->FileName(MakeFilm(film));
    Watcher watcher(*player, film);
    std::vector<double> shown;
    std::vector<double> held;
    int right = 0;
    const int count = 40;
    for (int i = 0; i < count; ++i) {
        const double target = times.Begin(7 + i * 179 % 480) + 0.013;
        const int wanted = times.NumberAt(target);
        const auto asked = Clock::now();
        player->CurrentPosition(target);
        held.push_back(Seconds(Clock::now()) - Seconds(asked));
        const bool exact = player->CurrentPosition() == target;
        Wait([&] { return watcher.Number() == wanted; }, 2s);
        shown.push_back(Seconds(Clock::now()) - Seconds(asked));
        Rest(60ms);
        right += exact && watcher.Number() == wanted ? 1 : 0;
    }
    const QString name = QLatin1String(container);
    Print(QStringLiteral("seek until shown, %1 1152x576, key every %2")
              .arg(name)
              .arg(group)
              .toStdString(),
          shown, std::to_string(right) + " of " + std::to_string(count) + " exact");
    Print("  the window held by a seek", held);
    const auto asked = Clock::now();
    double longest = 0;
    for (int i = 0; i < 50; ++i) {
        const auto before = Clock::now();
        player->CurrentPosition(times.Begin(25 + i * 9) + 0.013);
        QCoreApplication::processEvents();
        longest = std::max(longest, Seconds(Clock::now()) - Seconds(before));
        std::this_thread::sleep_for(5ms);
    }
    const int last = 25 + 49 * 9;
    const bool ended = Wait([&] { return watcher.Number() == last; }, 3s);
    Print("  50 seeks in a burst, until the last is shown",
          {Seconds(Clock::now()) - Seconds(asked) - 50 * 0.005},
          (ended ? "ends on the last; window held at most " : "DOES NOT END ON THE LAST; ") +
              QString::number(longest * 1000, 'f', 1).toStdString() + " ms");
}

/// Titles placed by the space bar through the X server, in the real window.
void MeasurePlacing(const char* container, int titles, XKeys& keys) {
    const double step = 0.61;
    const double length = 3 + titles * step;
    const Film film = Make(container, true, static_cast<int>(length * 25));
    const QString subtitles = InFilmFolder(QStringLiteral("titles.srt"));
    QFile file(subtitles);
    if (!file.open(QIODevice::WriteOnly))
        return;
    for (int i = 1; i <= titles; ++i)
        file.write(QStringLiteral("%1\r\n00:00:00,%2 --> 00:00:00,%2\r\nTitle %1\r\n\r\n")
                       .arg(i)
                       .arg(1, 3, 10, QLatin1Char('0'))
                       .toUtf8());
    file.close();
    auto owned = MakeMpvPlayer();
    Player& player = *owned;
    // Before the window's own drawing, which would make the pictures look late.
    Watcher watcher(player, film);
    frmQuelmar window(std::move(owned));
    window.resize(700, 560);
    window.show();
    window.OpenFiles(MakeFilm(film), subtitles);
    window.findChild<QRadioButton*>(QStringLiteral("optPosition"))->click();
    window.activateWindow();
    window.setFocus();
    Rest(500ms);
    player.Play();
    Wait([&] { return player.CurrentPosition() > 0.8; });
    watcher.Forget();
    struct Stroke {
        double moment;
        bool down;
    };
    std::vector<Stroke> strokes;
    std::atomic<bool> done = false;
    std::thread driver([&] {
        auto next = Clock::now() + 200ms;
        for (int i = 0; i < 2 * titles; ++i) {
            std::this_thread::sleep_until(next);
            const bool down = i % 2 == 0;
            strokes.push_back({Seconds(Clock::now()), down});
            keys.Space(down);
            // Never at the same phase of the pictures.
            next += down ? 247ms : 363ms;
        }
        done = true;
    });
    Wait([&] { return done.load(); }, std::chrono::seconds(titles + 10));
    driver.join();
    Rest(100ms);
    std::vector<double> errors;
    int placed = 0;
    for (std::size_t i = 0; i < strokes.size(); ++i) {
        const auto title = static_cast<std::int32_t>(i / 2) + 1;
        const double recorded =
            strokes[i].down ? window.Subt.StartTime(title) : window.Subt.EndTime(title);
        errors.push_back(recorded - watcher.At(strokes[i].moment));
        placed += strokes[i].down && std::abs(errors.back()) < 0.1 ? 1 : 0;
    }
    const auto tenth = static_cast<std::ptrdiff_t>(std::max<std::size_t>(1, errors.size() / 10));
    const double drift = Share({errors.end() - tenth, errors.end()}, 0.5) -
                         Share({errors.begin(), errors.begin() + tenth}, 0.5);
    Print(std::string("titles placed by key, ") + container, errors,
          std::to_string(placed) + " of " + std::to_string(titles) + ", drift " +
              QString::number(drift * 1000, 'f', 2).toStdString() + " ms");
    player.Stop();
}

void MeasureAllPlaying() {
    for (const double rate : {1.0, 0.5, 2.0})
        MeasurePlaying("avi", true, rate);
    for (const char* container : {"mpg", "asf", "mov", "mp4", "mkv", "webm", "ts"})
        MeasurePlaying(container, true, 1);
    for (const double rate : {1.0, 0.5, 2.0})
        MeasurePlaying("avi", false, rate);
}

void MeasureAllSeeks() {
    for (const char* container : {"avi", "mpg", "asf", "mov", "mp4", "mkv", "webm", "ts"})
        MeasureSeeks(container, 12);
    MeasureSeeks("avi", 250);
}

void MeasureAllPlacing(int titles) {
    XKeys keys;
    if (QGuiApplication::platformName() != "xcb" || !keys.Ready()) {
        std::printf("titles placed by key: not measured, there is no X server\n");
        return;
    }
    for (const char* container : {"avi", "mpg", "asf", "mov", "mp4", "mkv", "webm", "ts"})
        MeasurePlacing(container, titles, keys);
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QUELMAR_AUDIO"))
        qputenv("QUELMAR_AUDIO", "null");
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QByteArray home = InFilmFolder(QStringLiteral("home")).toUtf8();
    qputenv("XDG_CONFIG_HOME", home);
    qputenv("XDG_STATE_HOME", home);
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const int titles = argc > 1 ? std::max(1, QString(argv[1]).toInt()) : 40;
    const std::string part = argc > 2 ? argv[2] : "";
    const auto wanted = [&](const char* name) {
        return part.empty() || part == name;
    };
    std::printf("%-46s %5s %9s %9s %9s\n", "milliseconds", "n", "median", "99 %", "worst");
    if (wanted("playing"))
        MeasureAllPlaying();
    if (wanted("busy"))
        MeasureBusyWindow();
    if (wanted("selection"))
        MeasureSelectionEnd();
    if (wanted("seeks"))
        MeasureAllSeeks();
    if (wanted("placing"))
        MeasureAllPlacing(titles);
}
