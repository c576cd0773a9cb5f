#pragma once

#include "cli/titlefile.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// What titles are fitted by.
enum class FitBy {
    /// A film's own text tracks when one agrees with its sound, else the sound.
    Auto,
    Sound,
    Titles,
};

/// How long the parts of the work took.
struct FitSeconds {
    double decode = 0;
    double speech = 0;
    double fit = 0;
};

/// A film, a sound file or a subtitle file, opened to fit titles to it; read once for
/// any number of files. Every step may take long; `goOn` is asked between.
class Reference {
  public:
    struct Wish {
        std::filesystem::path file;
        FitBy by = FitBy::Auto;
        /// Of a film: the sound track, with `FitBy::Titles` the text track, counted from 1;
        /// 0: the one that the player takes, or of text tracks the first that agrees.
        int track = 0;
        FileManners manners;
        /// Threads for the fit; 0: as many as the machine has.
        unsigned threads = 0;
    };

    /// Nothing, with the reason in `message`, when there is nothing to fit by.
    static std::optional<Reference> Open(const Wish& wish, std::string& message);

    /// The answer, and in `seconds` what it took since the reference was opened.
    Fit FitTo(const std::vector<FitTitle>& titles, FitSeconds& seconds) const;
    /// "sound" or "titles".
    const char* Kind() const { return m_titles ? "titles" : "sound"; }

  private:
    bool OpenTitles(const Wish& wish, std::string& message);
    bool OpenFilm(const Wish& wish, std::string& message);
    bool TakeTextTrack(const Wish& wish, std::string& message);
    bool TakeSound(const Wish& wish, std::string& message);
    Fit Timed(const std::vector<FitTitle>& titles, const FitReference& reference,
              double& seconds) const;

    std::optional<RightTitles> m_titles;
    std::optional<SpeechCurve> m_speech;
    FitSeconds m_opening;
    unsigned m_threads = 0;
};
