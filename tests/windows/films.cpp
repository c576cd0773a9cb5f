#include "tests/windows/films.h"

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <stdexcept>

namespace {

// A picture is a row of twelve fields, black or white, above the row of their opposites.
constexpr int Bits = 12;
constexpr int Field = FilmWidth / Bits;
constexpr int EncodePatience = 60000;

bool Bit(int number, int field) {
    return ((number >> field) & 1) != 0;
}

QByteArray RawPicture(int number) {
    QByteArray picture(static_cast<qsizetype>(FilmWidth) * FilmHeight, '\0');
    for (int y = 0; y < FilmHeight; ++y)
        for (int x = 0; x < FilmWidth; ++x)
            if (Bit(number, x / Field) != (y >= FilmHeight / 2))
                picture[y * FilmWidth + x] = static_cast<char>(-1);
    return picture;
}

bool Kept(const Film& film, int number) {
    return !film.variable || number % 4 != 3;
}

/// How ffmpeg makes the films of one container.
struct Maker {
    const char* container;
    QStringList codecs;
    bool picture = true;
    /// Its times begin with the first picture, whatever ffprobe says of its streams: AVI
    /// has no time stamps, and an edit list says which sound to leave out.
    bool fromPicture = false;
    /// Its times are whole milliseconds.
    bool milliseconds = false;
};

const Maker& MakerOf(const Film& film) {
    const QStringList h264{"-c:v", "libx264", "-preset", "ultrafast", "-bf", "2"};
    static const Maker makers[] = {
        {"avi", {"-c:v", "mpeg4", "-vtag", "XVID", "-bf", "2", "-c:a", "libmp3lame"}, true, true},
        {"mpg", {"-c:v", "mpeg1video", "-bf", "2", "-c:a", "mp2"}},
        {"asf", {"-c:v", "msmpeg4", "-c:a", "wmav2"}},
        {"mov", h264 + QStringList{"-c:a", "aac"}, true, true},
        {"mp4", h264 + QStringList{"-c:a", "aac"}, true, true},
        {"mkv", h264 + QStringList{"-c:a", "ac3"}, true, false, true},
        {"webm", {"-c:v", "libvpx", "-deadline", "realtime", "-c:a", "libopus"}, true, false, true},
        {"ts", h264 + QStringList{"-c:a", "aac"}},
        {"m2ts", h264 + QStringList{"-c:a", "ac3"}},
        {"vob", {"-c:v", "mpeg2video", "-bf", "2", "-c:a", "mp2"}},
        {"ogm", {"-c:v", "libtheora", "-c:a", "libvorbis", "-f", "ogg"}},
        {"flv", {"-c:v", "flv", "-c:a", "libmp3lame", "-ar", "44100"}},
        {"wmv", {"-c:v", "wmv2", "-c:a", "wmav2"}},
        {"wav", {"-c:a", "pcm_s16le"}, false},
        {"mp3", {"-c:a", "libmp3lame"}, false},
        {"flac", {"-c:a", "flac"}, false},
        {"m4a", {"-c:a", "aac"}, false},
        {"aac", {"-c:a", "aac"}, false},
        {"opus", {"-c:a", "libopus"}, false},
        {"ogg", {"-c:a", "libvorbis"}, false},
        {"wma", {"-c:a", "wmav2"}, false},
    };
    const auto maker = std::find_if(std::begin(makers), std::end(makers), [&](const Maker& one) {
        return film.container == QLatin1String(one.container);
    });
    if (maker == std::end(makers))
        throw std::runtime_error("no films in ." + film.container.toStdString());
    return *maker;
}

QStringList Arguments(const Film& film, const QString& path) {
    QStringList arguments{"-v", "error", "-nostdin", "-y"};
    const auto number = [](double value) {
        return QString::number(value, 'g', 12);
    };
    if (film.HasPicture())
        arguments << "-f"
                  << "rawvideo"
                  << "-pix_fmt"
                  << "gray"
                  << "-s" << QStringLiteral("%1x%2").arg(FilmWidth).arg(FilmHeight) << "-framerate"
                  << number(film.rate) << "-i"
                  << "pipe:0";
    if (film.sound) {
        if (film.soundDelay != 0)
            arguments << "-itsoffset" << number(film.soundDelay);
        arguments << "-f"
                  << "lavfi"
                  << "-i"
                  << "sine=frequency=440:sample_rate=48000:duration=" + number(film.Length());
    }
    if (film.variable)
        arguments << "-vf"
                  << "select=not(eq(mod(n\\,4)\\,3))"
                  << "-fps_mode"
                  << "vfr";
    if (film.scale != 1)
        arguments << "-vf" << QStringLiteral("scale=iw*%1:ih*%1:flags=neighbor").arg(film.scale);
    if (film.HasPicture())
        arguments << "-pix_fmt" << (film.tenBit ? "yuv420p10le" : "yuv420p") << "-b:v"
                  << "800k"
                  << "-g" << QString::number(film.group);
    const QStringList& codecs = MakerOf(film).codecs;
    arguments << codecs;
    if (codecs.contains("libx264"))
        arguments << "-x264-params" << QStringLiteral("keyint=%1:scenecut=0").arg(film.group);
    if (film.secondSound)
        arguments << "-map"
                  << "0"
                  << "-map"
                  << "1"
                  << "-map"
                  << "1"
                  << "-metadata:s:a:0"
                  << "language=eng"
                  << "-metadata:s:a:1"
                  << "language=ger";
    if (film.interlaced)
        arguments << "-flags"
                  << "+ildct+ilme"
                  << "-top"
                  << "1";
    if (film.start != 0)
        arguments << "-output_ts_offset" << number(film.start);
    return arguments << path;
}

/// The numbers that ffprobe prints, one on each line; at least one.
std::vector<double> Probe(const QString& path, const QStringList& what) {
    QProcess probe;
    probe.start(QStringLiteral("ffprobe"),
                QStringList{"-v", "error", "-of", "csv=p=0"} + what + QStringList{path});
    if (!probe.waitForFinished(EncodePatience) || probe.exitCode() != 0)
        throw std::runtime_error("ffprobe: " + probe.readAllStandardError().toStdString());
    std::vector<double> numbers;
    for (const QByteArray& line : probe.readAllStandardOutput().trimmed().split('\n'))
        numbers.push_back(line.split(',').front().toDouble());
    return numbers;
}

void Encode(const QStringList& arguments, const QByteArray& input) {
    QProcess encoder;
    encoder.setProcessChannelMode(QProcess::MergedChannels);
    encoder.start(QStringLiteral("ffmpeg"), arguments);
    encoder.write(input);
    encoder.closeWriteChannel();
    if (!encoder.waitForFinished(EncodePatience) || encoder.exitCode() != 0)
        throw std::runtime_error("ffmpeg: " + encoder.readAll().toStdString() +
                                 encoder.errorString().toStdString());
}

QByteArray Pictures(const Film& film) {
    QByteArray raw;
    if (film.HasPicture())
        for (int i = 0; i < film.pictures; ++i)
            raw += RawPicture(i);
    return raw;
}

} // namespace

bool Film::HasPicture() const {
    return MakerOf(*this).picture;
}

PictureTimes::PictureTimes(const Film& film)
    : m_film(film) {
    if (MakerOf(film).fromPicture)
        return;
    const QString path = MakeFilm(film);
    // Sound that begins before 0 is left out up to there.
    const double start = std::max(0.0, Probe(path, {"-show_entries", "format=start_time"}).front());
    m_first =
        Probe(path, {"-select_streams", "v:0", "-show_entries", "stream=start_time"}).front() -
        start;
    if (!MakerOf(film).milliseconds)
        return;
    m_stamps = Probe(path, {"-select_streams", "v:0", "-show_entries", "packet=pts_time"});
    std::sort(m_stamps.begin(), m_stamps.end());
    for (double& stamp : m_stamps)
        stamp -= start;
}

double PictureTimes::Begin(int number) const {
    const auto missing = static_cast<std::size_t>(m_film.variable ? number / 4 : 0);
    const auto place = static_cast<std::size_t>(number) - missing;
    return Kept(m_film, number) && place < m_stamps.size() ? m_stamps[place]
                                                           : m_first + number / m_film.rate;
}

int PictureTimes::NumberAt(double seconds) const {
    constexpr double Slack = 1e-6;
    int number =
        std::clamp(static_cast<int>((seconds - m_first) * m_film.rate) + 1, 0, m_film.pictures - 1);
    while (number > 0 && (Begin(number) > seconds + Slack || !Kept(m_film, number)))
        --number;
    return number;
}

QString InFilmFolder(const QString& name) {
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

QString MakeFilm(const Film& film) {
    const QString path = InFilmFolder(
        QStringLiteral("film-%1-%2-%3-%4-%5-%6-%7-%8%9")
            .arg(film.pictures)
            .arg(film.rate)
            .arg(film.group)
            .arg(film.sound ? 1 : 0)
            .arg(film.soundDelay)
            .arg(film.start)
            .arg((film.variable ? 1 : 0) + (film.tenBit ? 2 : 0) + (film.interlaced ? 4 : 0) +
                 10 * film.rotation)
            .arg(film.secondSound ? 1 : 0)
            .arg(film.scale == 1 ? "." + film.container
                                 : QStringLiteral("-x%1.").arg(film.scale) + film.container));
    if (QFile::exists(path))
        return path;
    if (film.rotation == 0) {
        Encode(Arguments(film, path), Pictures(film));
        return path;
    }
    // A film is turned by a note in its container alone.
    Film level = film;
    level.rotation = 0;
    Encode({"-v", "error", "-y", "-i", MakeFilm(level), "-c", "copy", "-metadata:s:v:0",
            QStringLiteral("rotate=%1").arg(film.rotation), path},
           {});
    return path;
}

std::optional<int> PictureNumber(const QImage& image) {
    // The bars above and below, or left and right.
    const double scale =
        std::min(image.width() * 1.0 / FilmWidth, image.height() * 1.0 / FilmHeight);
    const double left = (image.width() - FilmWidth * scale) / 2;
    const double top = (image.height() - FilmHeight * scale) / 2;
    const auto light = [&](int field, double row) {
        return qGray(image.pixel(static_cast<int>(left + (field + 0.5) * Field * scale),
                                 static_cast<int>(top + row * FilmHeight * scale)));
    };
    int number = 0;
    for (int field = 0; field < Bits; ++field) {
        const int upper = light(field, 0.25);
        const int lower = light(field, 0.75);
        if (std::abs(upper - lower) < 96)
            return {};
        number |= (upper > lower ? 1 : 0) << field;
    }
    return number;
}
