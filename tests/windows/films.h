#pragma once

#include <QImage>
#include <QString>

#include <optional>
#include <vector>

/// Test films, made by ffmpeg when they are first asked for. Every picture
/// carries its own number, which can be read back from what was drawn.
struct Film {
    /// The file name's extension.
    QString container = QStringLiteral("avi");
    int pictures = 100;
    double rate = 25;
    /// Pictures from one key picture to the next.
    int group = 12;
    bool sound = true;
    /// Seconds by which the sound comes after the picture.
    double soundDelay = 0;
    /// Seconds at which the file's own time stamps start.
    double start = 0;
    /// Every fourth picture is missing: the one before it lasts twice as long.
    bool variable = false;
    /// Times the size of the other films.
    int scale = 1;
    /// Another audio track, in German.
    bool secondSound = false;
    /// Degrees by which a player has to turn the picture counter-clockwise.
    int rotation = 0;
    bool tenBit = false;
    /// Coded in fields.
    bool interlaced = false;

    bool HasPicture() const;
    double Length() const { return pictures / rate; }
};

/// The film's path; throws when ffmpeg fails.
QString MakeFilm(const Film& film);

/// When each picture of the film begins, counted from the film's beginning (some
/// containers let the sound begin before the first picture).
class PictureTimes {
  public:
    explicit PictureTimes(const Film& film);
    /// The number of the picture that covers this time.
    int NumberAt(double seconds) const;
    double Begin(int number) const;

  private:
    Film m_film;
    double m_first = 0;
    /// Each picture's time in the file, where it says so in whole milliseconds.
    std::vector<double> m_stamps;
};

/// A path in the films' folder, which lives as long as the process.
QString InFilmFolder(const QString& name);

/// The number in a drawn picture, wherever it lies between black bars; nothing
/// when the picture carries none.
std::optional<int> PictureNumber(const QImage& image);

inline constexpr int FilmWidth = 192;
inline constexpr int FilmHeight = 96;
