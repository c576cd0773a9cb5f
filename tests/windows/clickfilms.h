#pragma once

#include <QString>
#include <QStringList>

#include <vector>

/// A film or sound file with a click every 2.5 s, made by ffmpeg: one for each container, and
/// those whose sound comes late, whose time stamps start late, or that have an edit list.
struct ClickFilm {
    const char* name;
    /// With the point.
    const char* extension;
    const char* pictureCoding;
    const char* soundCoding;
    /// Seconds by which the sound comes after the pictures, and the pictures after the sound.
    double soundDelay = 0;
    double pictureDelay = 0;
    /// Seconds at which the file's own time stamps start.
    double start = 0;

    bool HasPictures() const { return *pictureCoding != '\0'; }
};

const std::vector<ClickFilm>& ClickFilms();

/// The film's path in this folder; throws when ffmpeg fails.
QString MakeClickFilm(const ClickFilm& film, const QString& folder);

/// When the clicks are heard that come after this position, in seconds on the player's clock:
/// the player plays from there, and what goes to the sound output is caught in a file in the
/// folder. QUELMAR_AUDIO must be "pcm". Throws when the player cannot play.
std::vector<double> HeardClicks(const QString& film, double position, const QString& folder);
/// The same clicks as the map shows them: the middles of its loudest milliseconds.
std::vector<double> MappedClicks(const QString& film, double position);

/// By how much the map shows each click later than it is heard, in seconds; throws when
/// they are not the same clicks.
std::vector<double> ClickErrors(const ClickFilm& film, double position, const QString& folder);
