#pragma once

#include "formats/format.h"
#include "media/mediafile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The tracks of subtitles in a film. They are read on a thread of their own, all at once; the
/// film may be long and its disk slow. To stop, destroy it: that takes at most 100 ms.
class FilmTracks {
  public:
    enum class State {
        /// The tracks are not yet known.
        Opening,
        /// They are; their titles are being counted.
        Reading,
        /// All is known.
        Complete,
        /// It is no film that can be read.
        NoFilm,
    };
    struct Track {
        TextTrack about;
        /// "SubRip", "PGS pictures"
        std::string kind;
        /// Null: its titles cannot be read as text.
        const Format* format = nullptr;
        /// So far.
        std::int32_t titles = 0;
    };

    /// Begins at once.
    explicit FilmTracks(std::filesystem::path film);
    ~FilmTracks();
    FilmTracks(const FilmTracks&) = delete;
    FilmTracks& operator=(const FilmTracks&) = delete;

    State Now() const;
    /// How much of the film is read, 0 to 1.
    double Done() const;
    /// In the order of the film; empty while `Opening`.
    std::vector<Track> Tracks() const;
    /// Until there is nothing left to do.
    void Wait() const;

    /// Puts the titles of a track, counted from 0, in place of those there, with no undo history.
    /// false, and nothing happens, when it has no format or not all is read.
    bool Load(std::size_t track, const std::string& codePage, SUBTITLES& titles,
              FileStyle& style) const;

  private:
    class Work;
    std::unique_ptr<Work> m_work;
};
