#include "tests/windows/films.h"

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstddef>
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

QStringList Codecs(const Film& film) {
    if (film.container == "mpg")
        return {"-c:v", "mpeg1video", "-bf", "2", "-c:a", "mp2"};
    if (film.container == "asf")
        return {"-c:v", "msmpeg4", "-c:a", "wmav2"};
    if (film.container == "mov")
        return {"-c:v", "libx264", "-preset", "ultrafast", "-bf", "2", "-c:a", "aac"};
    if (film.container == "wav")
        return {"-c:a", "pcm_s16le"};
    if (film.container == "mp3")
        return {"-c:a", "libmp3lame"};
    return {"-c:v", "mpeg4", "-vtag", "XVID", "-bf", "2", "-c:a", "libmp3lame"};
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
        arguments << "-pix_fmt"
                  << "yuv420p"
                  << "-b:v"
                  << "800k"
                  << "-g" << QString::number(film.group);
    arguments << Codecs(film);
    if (film.container == "mov")
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
    if (film.start != 0)
        arguments << "-output_ts_offset" << number(film.start);
    return arguments << path;
}

/// The number that ffprobe prints.
double Probe(const QString& path, const QStringList& what) {
    QProcess probe;
    probe.start(QStringLiteral("ffprobe"),
                QStringList{"-v", "error", "-of", "csv=p=0"} + what + QStringList{path});
    if (!probe.waitForFinished(EncodePatience) || probe.exitCode() != 0)
        throw std::runtime_error("ffprobe: " + probe.readAllStandardError().toStdString());
    return probe.readAllStandardOutput().split('\n').front().split(',').front().toDouble();
}

QByteArray Pictures(const Film& film) {
    QByteArray raw;
    if (film.HasPicture())
        for (int i = 0; i < film.pictures; ++i)
            raw += RawPicture(i);
    return raw;
}

} // namespace

PictureTimes::PictureTimes(const Film& film)
    : m_film(film) {
    // AVI has no time stamps of its own, and QuickTime says which sound to leave
    // out: there the first picture begins the film.
    if (film.container == "avi" || film.container == "mov")
        return;
    const QString path = MakeFilm(film);
    m_first = Probe(path, {"-select_streams", "v:0", "-show_entries", "stream=start_time"}) -
              Probe(path, {"-show_entries", "format=start_time"});
}

int PictureTimes::NumberAt(double seconds) const {
    const double passed = std::floor((seconds - m_first) * m_film.rate + 1e-6);
    int number = std::clamp(static_cast<int>(passed), 0, m_film.pictures - 1);
    while (!Kept(m_film, number))
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
            .arg(film.variable ? 1 : 0)
            .arg(film.secondSound ? 1 : 0)
            .arg(film.scale == 1 ? "." + film.container
                                 : QStringLiteral("-x%1.").arg(film.scale) + film.container));
    if (QFile::exists(path))
        return path;
    QProcess encoder;
    encoder.setProcessChannelMode(QProcess::MergedChannels);
    encoder.start(QStringLiteral("ffmpeg"), Arguments(film, path));
    encoder.write(Pictures(film));
    encoder.closeWriteChannel();
    if (!encoder.waitForFinished(EncodePatience) || encoder.exitCode() != 0)
        throw std::runtime_error("ffmpeg: " + encoder.readAll().toStdString() +
                                 encoder.errorString().toStdString());
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
