// What the map of a film's sound costs, and how right its times are.
// `quelmar_sound_benchmark [FOLDER [FILM]]`: the films are made in the folder, or stay there from
// the last time; without one they are made anew. With FILM ("opus") only the long film of that
// name is mapped. Needs ffmpeg, for some minutes.

#include "player/mpvengine.h"
#include "player/mpvpicture.h"
#include "sound/soundmapper.h"
#include "tests/windows/clickfilms.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <stdexcept>
#include <thread>

#include <malloc.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// Of this process, in MB of 10^6 bytes.
double Memory() {
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const double pages = file.readAll().split(' ').value(1).toDouble();
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

void Encode(const QStringList& words) {
    if (QProcess::execute("ffmpeg", QStringList{"-nostdin", "-v", "error", "-y"} + words) != 0)
        throw std::runtime_error("ffmpeg fails");
}

void PrintClicks(const QString& folder) {
    constexpr double Position = 1;
    qputenv("QUELMAR_AUDIO", "pcm");
    std::printf("By how many milliseconds the map shows clicks later than they are heard\n");
    for (const ClickFilm& film : ClickFilms()) {
        try {
            const std::vector<double> errors = ClickErrors(film, Position, folder);
            const auto [least, greatest] = std::minmax_element(errors.begin(), errors.end());
            std::printf("  %-22s %6.2f to %5.2f\n", film.name, 1000 * *least, 1000 * *greatest);
        } catch (const std::exception& error) {
            std::printf("  %-22s %s\n", film.name, error.what());
        }
    }
}

struct LongFilm {
    const char* name;
    const char* coding;
};

constexpr LongFilm LongFilms[] = {
    {"aac.mp4", "-c:v libx264 -preset ultrafast -b:v 600k -c:a aac -b:a 128k"},
    {"ac3.mkv", "-c:v libx264 -preset ultrafast -b:v 600k -c:a ac3 -b:a 448k"},
    {"opus.mkv", "-c:v libx264 -preset ultrafast -b:v 600k -c:a libopus -b:a 128k"},
    {"mp3.avi", "-c:v mpeg4 -b:v 600k -c:a libmp3lame -b:a 128k"},
};

/// Two hours, of which each five minutes are alike.
QString MakeLongFilm(const LongFilm& film, const QString& folder) {
    const QString path = folder + "/long-" + film.name;
    if (QFile::exists(path))
        return path;
    const QString part = folder + "/part-" + film.name;
    Encode(QStringList{"-f", "lavfi", "-i", "testsrc2=s=320x180:r=25:d=300", "-f", "lavfi", "-i",
                       "anoisesrc=c=pink:r=48000:d=300:a=0.3", "-ac", "2"} +
           QString(film.coding).split(' ') + QStringList{part});
    Encode({"-stream_loop", "23", "-i", part, "-c", "copy", path});
    QFile::remove(part);
    return path;
}

/// Plays a film in silence on a thread of its own, as long as it exists.
class Playing {
  public:
    explicit Playing(const QString& film)
        : m_thread([this, path = QFile::encodeName(film).toStdString()] { Run(path); }) {}
    ~Playing() { Stop(); }
    Playing(const Playing&) = delete;
    Playing& operator=(const Playing&) = delete;

    /// How many pictures were dropped.
    std::int64_t Stop() {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
        return m_dropped;
    }
    void AwaitStart() const {
        while (!m_started)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }

  private:
    void Run(const std::string& path) {
        const auto engine = MpvEngine::Make(*MpvLibrary::Get(), [] {});
        const auto picture = MpvPicture::Make(engine->Library(), engine->Handle(), [] {});
        QImage image(1280, 720, QImage::Format_RGB32);
        const auto show = [&] {
            if (picture->New()) {
                picture->Draw(image, 0);
                picture->Shown();
            }
        };
        engine->Load(path);
        while (!engine->WaitForAnswer(std::chrono::milliseconds(2)))
            show();
        engine->Play();
        while (!m_stop) {
            show();
            m_started = m_started || engine->Position() > 1;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        m_dropped = engine->DroppedPictures();
    }

    std::atomic<bool> m_stop = false;
    std::atomic<bool> m_started = false;
    std::atomic<std::int64_t> m_dropped = 0;
    std::thread m_thread;
};

struct Mapped {
    double first = 0;
    double whole = 0;
    double memory = 0;
};

Mapped Map(const QString& film, bool cache) {
    constexpr double Position = 3600;
    const double before = Memory();
    const auto begin = Clock::now();
    Mapped mapped;
    std::atomic<const SoundMapper*> asked = nullptr;
    std::shared_ptr<const SoundMap> map;
    {
        SoundMapper::Wish wish;
        wish.film = film.toStdU16String();
        wish.position = Position;
        wish.cache = cache;
        SoundMapper mapper(wish, [&] {
            const SoundMapper* const now = asked;
            const auto grown = mapped.first == 0 && now != nullptr ? now->Map() : nullptr;
            if (grown != nullptr && grown->Shape(static_cast<std::size_t>(
                                        Position * 1000 / SoundPage::Milliseconds)) != nullptr)
                mapped.first = Since(begin);
        });
        asked = &mapper;
        mapper.Wait();
        mapped.whole = Since(begin);
        map = mapper.Map();
        if (map == nullptr || !map->Complete())
            throw std::runtime_error("no map of " + film.toStdString());
    }
    mapped.memory = Memory() - before;
    if (mapped.first == 0)
        mapped.first = mapped.whole;
    return mapped;
}

/// The longest of many times that it takes to stop, at moments all over the work.
double LongestStop(const QString& film) {
    double longest = 0;
    for (int i = 0; i < 40; ++i) {
        SoundMapper::Wish wish;
        wish.film = film.toStdU16String();
        wish.cache = false;
        auto mapper = std::make_unique<SoundMapper>(wish);
        std::this_thread::sleep_for(std::chrono::milliseconds(7 * i));
        const auto begin = Clock::now();
        mapper.reset();
        longest = std::max(longest, Since(begin));
    }
    return longest;
}

void PrintColumns(const QString& film) {
    SoundMapper::Wish wish;
    wish.film = film.toStdU16String();
    const SoundMapper mapper(wish);
    mapper.Wait();
    const auto map = mapper.Map();
    std::vector<SoundColumn> columns(3840);
    std::printf("\n3840 columns of a drawing, in milliseconds\n");
    for (const double seconds : {2.0, 60.0, 600.0, 7200.0}) {
        constexpr int Rounds = 50;
        const auto begin = Clock::now();
        for (int i = 0; i < Rounds; ++i)
            map->Columns(i, seconds / 3840, columns);
        std::printf("  %6.0f s wide %10.2f\n", seconds, 1000 * Since(begin) / Rounds);
    }
}

void PrintLongFilms(const QString& folder, const QString& only) {
    qputenv("QUELMAR_AUDIO", "null");
    std::printf(
        "\nFilms of two hours    first shape  whole map  playing: map  dropped  from the cache"
        "  memory  longest stop\n");
    QString last;
    for (const LongFilm& film : LongFilms) {
        if (!QString(film.name).startsWith(only))
            continue;
        const QString path = last = MakeLongFilm(film, folder);
        const Mapped alone = Map(path, true);
        const Mapped again = Map(path, true);
        Playing playing(path);
        playing.AwaitStart();
        const Mapped beside = Map(path, false);
        const std::int64_t dropped = playing.Stop();
        std::printf("  %-18s %10.2f s %8.1f s %10.1f s %8lld %13.3f s %4.0f MB %10.0f ms\n",
                    film.name, alone.first, alone.whole, beside.whole,
                    static_cast<long long>(dropped), again.whole, alone.memory,
                    1000 * LongestStop(path));
        std::fflush(stdout);
    }
    if (!last.isEmpty())
        PrintColumns(last);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QTemporaryDir temporary;
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : temporary.path();
    qputenv("XDG_CACHE_HOME", (temporary.path() + "/cache").toLocal8Bit());
    try {
        const QString only = QCoreApplication::arguments().value(2);
        if (only.isEmpty())
            PrintClicks(temporary.path());
        PrintLongFilms(folder, only);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
