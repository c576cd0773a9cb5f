#include "tests/windows/clickfilms.h"

#include "player/mpvengine.h"
#include "player/mpvpicture.h"
#include "sound/soundmapper.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <functional>
#include <stdexcept>

namespace {

constexpr double Seconds = 5.5;
/// Time 0 may be that of the first picture: then it takes longer until the second click.
constexpr double SecondsOfLatePictures = 8;
constexpr int Frequency = 48000;
constexpr auto Patience = std::chrono::seconds(30);
/// A seek ends no further from the position than that (seconds).
constexpr double NearBy = 0.3;
/// What is louder is a click.
constexpr double Loud = 0.25;
/// Two clicks are further apart (seconds).
constexpr double Apart = 0.5;

const char* const H264 = "-c:v libx264 -preset ultrafast";

/// The peak of each click.
template <typename AT>
std::vector<double> Peaks(std::size_t count, double step, AT at) {
    std::vector<double> peaks;
    double loudest = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double time = static_cast<double>(i) * step;
        const double value = std::abs(at(i));
        if (value < Loud)
            continue;
        if (peaks.empty() || time - peaks.back() > Apart) {
            peaks.push_back(time);
            loudest = value;
        } else if (value > loudest) {
            peaks.back() = time;
            loudest = value;
        }
    }
    return peaks;
}

/// A file of libmpv's: the first channel of it.
std::vector<double> ClicksOfWav(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no sound was caught");
    const QByteArray bytes = file.readAll();
    const char* const format = bytes.constData() + bytes.indexOf("fmt ") + 8;
    const auto channels = qFromLittleEndian<quint16>(format + 2);
    const auto rate = qFromLittleEndian<quint32>(format + 4);
    const auto bits = qFromLittleEndian<quint16>(format + 14);
    const qsizetype first = bytes.indexOf("data") + 8;
    const qsizetype step = qsizetype{channels} * bits / 8;
    const auto count = static_cast<std::size_t>((bytes.size() - first) / step);
    // 1: whole numbers, 3: floating point, or told further on.
    constexpr quint16 WholeNumbers = 1;
    constexpr quint16 FurtherOn = 0xFFFE;
    auto kind = qFromLittleEndian<quint16>(format);
    if (kind == FurtherOn)
        kind = qFromLittleEndian<quint16>(format + 24);
    return Peaks(count, 1.0 / rate, [&](std::size_t i) -> double {
        const char* const sample = bytes.constData() + first + static_cast<qsizetype>(i) * step;
        if (bits == 16)
            return qFromLittleEndian<qint16>(sample) / 32768.0;
        return kind == WholeNumbers ? qFromLittleEndian<qint32>(sample) / 2147483648.0
                                    : double{qFromLittleEndian<float>(sample)};
    });
}

/// The player's engine without a window: pictures are passed over.
class Listener {
  public:
    explicit Listener(const QString& film)
        : m_engine(MpvEngine::Make(*MpvLibrary::Get(), [] {}))
        , m_picture(MpvPicture::Make(m_engine->Library(), m_engine->Handle(), [] {})) {
        m_engine->Load(QFile::encodeName(film).toStdString());
        Await([this] { return m_engine->WaitForAnswer(std::chrono::milliseconds(1)); });
        if (!m_engine->Media().ready)
            throw std::runtime_error("the player cannot play " + film.toStdString());
    }

    /// Where the sound begins when it is played on from there: with the picture that
    /// covers the position.
    double Seek(double position) {
        m_engine->Seek(position);
        // While it seeks, libmpv tells the time that it looks for.
        Await([&] { return Flag("seeking") == 0 && std::abs(Told() - position) < NearBy; });
        return m_engine->Media().picture ? Told() : position;
    }

    void PlayToTheEnd() {
        m_engine->Play();
        Await([this] { return !m_engine->Playing(); });
    }

  private:
    void Await(const std::function<bool()>& done) {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        // Twice in a row: between a call and what it changes, the old state may still be told.
        for (int times = 0; times < 2;) {
            if (m_picture->New())
                m_picture->Skip();
            times = done() ? times + 1 : 0;
            QThread::msleep(2);
            if (std::chrono::steady_clock::now() > deadline)
                throw std::runtime_error("the player takes too long");
        }
    }

    double Told() const {
        double value = 0;
        m_engine->Library().get_property(m_engine->Handle(), "time-pos", MPV_FORMAT_DOUBLE, &value);
        return value - m_engine->Origin();
    }
    int Flag(const char* name) const {
        int value = 1;
        m_engine->Library().get_property(m_engine->Handle(), name, MPV_FORMAT_FLAG, &value);
        return value;
    }

    std::unique_ptr<MpvEngine> m_engine;
    std::unique_ptr<MpvPicture> m_picture;
};

} // namespace

const std::vector<ClickFilm>& ClickFilms() {
    static const std::vector<ClickFilm> Films{
        {"avi", ".avi", "-c:v mpeg4", "-c:a libmp3lame"},
        {"mpg", ".mpg", "-c:v mpeg2video", "-c:a mp2"},
        {"asf", ".asf", "-c:v wmv2", "-c:a wmav2"},
        {"mov", ".mov", "-c:v mpeg4", "-c:a pcm_s16le"},
        {"mp4", ".mp4", H264, "-c:a aac"},
        {"mkv", ".mkv", H264, "-c:a ac3"},
        {"mkv_opus", ".mkv", H264, "-c:a libopus"},
        {"webm", ".webm", "-c:v libvpx -deadline realtime -cpu-used 8", "-c:a libvorbis"},
        {"ts", ".ts", "-c:v mpeg2video", "-c:a ac3"},
        {"wav", ".wav", "", "-c:a pcm_s16le"},
        {"mp3", ".mp3", "", "-c:a libmp3lame"},
        {"mp3_of_varying_rate", ".mp3", "", "-c:a libmp3lame -q:a 5"},
        {"m4a", ".m4a", "", "-c:a aac"},
        {"flac", ".flac", "", "-c:a flac"},
        {"ogg", ".ogg", "", "-c:a libvorbis"},
        {"ogg_opus", ".ogg", "", "-c:a libopus"},
        {"mp4_late_sound", ".mp4", H264, "-c:a aac", 0.7},
        {"mkv_late_sound", ".mkv", H264, "-c:a libmp3lame", 0.7},
        {"mpg_late_sound", ".mpg", "-c:v mpeg2video", "-c:a mp2", 0.7},
        {"asf_late_sound", ".asf", "-c:v wmv2", "-c:a wmav2", 0.7},
        {"ts_late_sound", ".ts", "-c:v mpeg2video", "-c:a mp2", 0.7},
        {"mp4_late_picture", ".mp4", H264, "-c:a aac", 0, 0.7},
        {"mkv_late_picture", ".mkv", H264, "-c:a aac", 0, 0.7},
        {"ts_late_picture", ".ts", "-c:v mpeg2video", "-c:a ac3", 0, 0.7},
        {"ts_start", ".ts", "-c:v mpeg2video", "-c:a ac3", 0, 0, 1000},
        {"mkv_start", ".mkv", H264, "-c:a aac", 0, 0, 10},
        {"mpg_start", ".mpg", "-c:v mpeg2video", "-c:a mp2", 0, 0, 30},
        {"m4a_start", ".m4a", "", "-c:a aac", 0.7},
    };
    return Films;
}

QString MakeClickFilm(const ClickFilm& film, const QString& folder) {
    const QString path = folder + "/" + film.name + film.extension;
    const QString seconds =
        QString::number(film.pictureDelay > 0 ? SecondsOfLatePictures : Seconds);
    const QString about = QStringLiteral("(mod(t\\,2.5)-1.25)");
    const QString sound = "aevalsrc=0.9*cos(2*PI*1500*" + about + ")*exp(-pow(" + about +
                          "/0.0007\\,2)):s=" + QString::number(Frequency) + ":d=" + seconds;
    QStringList words{"-nostdin", "-v", "error", "-y"};
    if (film.HasPictures())
        words << "-itsoffset" << QString::number(film.pictureDelay) << "-f"
              << "lavfi"
              << "-i"
              << "testsrc2=s=96x64:r=25:d=" + seconds;
    words << "-itsoffset" << QString::number(film.soundDelay) << "-f"
          << "lavfi"
          << "-i" << sound;
    if (film.HasPictures())
        words << "-map"
              << "0:v"
              << "-map"
              << "1:a" << QString(film.pictureCoding).split(' ');
    words << QString(film.soundCoding).split(' ');
    if (film.start != 0)
        words << "-output_ts_offset" << QString::number(film.start);
    if (QProcess::execute("ffmpeg", words << path) != 0)
        throw std::runtime_error("ffmpeg fails on " + path.toStdString());
    return path;
}

std::vector<double> HeardClicks(const QString& film, double position, const QString& folder) {
    // libmpv writes into the folder that the process works in.
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder);
    double begin = 0;
    {
        Listener listener(film);
        begin = listener.Seek(position);
        listener.PlayToTheEnd();
    }
    QDir::setCurrent(before);
    std::vector<double> clicks = ClicksOfWav(folder + "/audiodump.wav");
    for (double& click : clicks)
        click += begin;
    return clicks;
}

std::vector<double> MappedClicks(const QString& film, double position) {
    SoundMapper::Wish wish;
    wish.film = film.toStdU16String();
    wish.cache = false;
    wish.background = false;
    const SoundMapper mapper(wish);
    mapper.Wait();
    const auto map = mapper.Map();
    if (map == nullptr || !map->Complete())
        throw std::runtime_error("no map of " + film.toStdString());
    constexpr double Millisecond = 0.001;
    std::vector<SoundColumn> columns(static_cast<std::size_t>(map->Length() / Millisecond));
    map->Columns(0, Millisecond, columns);
    std::vector<double> clicks = Peaks(columns.size(), Millisecond,
                                       [&](std::size_t i) { return double{columns[i].greatest}; });
    for (double& click : clicks)
        click += Millisecond / 2;
    std::erase_if(clicks, [position](double click) { return click < position; });
    return clicks;
}

std::vector<double> ClickErrors(const ClickFilm& film, double position, const QString& folder) {
    const QString path = MakeClickFilm(film, folder);
    const std::vector<double> heard = HeardClicks(path, position, folder);
    std::vector<double> errors = MappedClicks(path, position);
    if (heard.empty() || heard.size() != errors.size())
        throw std::runtime_error(std::to_string(errors.size()) + " clicks in the map, " +
                                 std::to_string(heard.size()) + " heard");
    for (std::size_t i = 0; i < errors.size(); ++i)
        errors[i] -= heard[i];
    return errors;
}
