#include "cli/reference.h"

#include "cli/filmreference.h"
#include "formats/format.h"

#include <chrono>

namespace {

class Watch {
  public:
    double Seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_begin).count();
    }

  private:
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

} // namespace

std::optional<Reference> Reference::Open(const Wish& wish, std::string& message) {
    Reference reference;
    reference.m_threads = wish.threads;
    std::error_code error;
    if (!std::filesystem::is_regular_file(wish.file, error)) {
        message = "cannot be opened";
        return std::nullopt;
    }
    const bool isTitles = FormatByName(NameOf(wish.file)) != nullptr;
    const bool opened =
        isTitles ? reference.OpenTitles(wish, message) : reference.OpenFilm(wish, message);
    if (!opened)
        return std::nullopt;
    return reference;
}

bool Reference::OpenTitles(const Wish& wish, std::string& message) {
    if (wish.by == FitBy::Sound) {
        message = "is a subtitle file and has no sound";
        return false;
    }
    TitleFile file;
    if (!file.Load(wish.file, wish.manners, message))
        return false;
    m_titles = file.Titles();
    return true;
}

bool Reference::OpenFilm(const Wish& wish, std::string& message) {
    if (wish.by == FitBy::Titles)
        return TakeTextTrack(wish, message);
    if (!TakeSound(wish, message)) {
        // Where nothing can be heard, what can be read must do.
        std::string noTitles;
        return wish.by == FitBy::Auto && TakeTextTrack(wish, noTitles);
    }
    if (wish.by == FitBy::Auto) {
        std::string noTitles;
        TakeTextTrack(wish, noTitles);
    }
    return true;
}

bool Reference::TakeSound(const Wish& wish, std::string& message) {
    const std::optional<FilmSpeech> film = SpeechOfFilm(wish.file, wish.track, message);
    if (!film)
        return false;
    m_speech = film->curve;
    m_opening.decode = film->decodeSeconds;
    m_opening.speech = film->speechSeconds;
    return true;
}

bool Reference::TakeTextTrack(const Wish& wish, std::string& message) {
    const int track = wish.by == FitBy::Titles ? wish.track : 0;
    const Watch watch;
    const std::vector<RightTitles> tracks = TextTracksOf(wish.file, track);
    m_opening.decode += watch.Seconds();
    for (const RightTitles& titles : tracks) {
        // By itself a track tells nothing about its own times.
        const bool agrees =
            !m_speech || Timed(titles, *m_speech, m_opening.fit).verdict == FitVerdict::Right;
        if (agrees) {
            m_titles = titles;
            return true;
        }
    }
    message = track == 0 ? "has no text track that can be read" : "has no such text track";
    return false;
}

Fit Reference::Timed(const std::vector<FitTitle>& titles, const FitReference& reference,
                     double& seconds) const {
    FitOptions options;
    options.threads = m_threads;
    const Watch watch;
    Fit fit = FindFit(titles, reference, {}, {}, options);
    seconds += watch.Seconds();
    return fit;
}

Fit Reference::FitTo(const std::vector<FitTitle>& titles, FitSeconds& seconds) const {
    seconds = m_opening;
    Fit fit;
    if (m_titles)
        fit = Timed(titles, *m_titles, seconds.fit);
    // Titles that a text track does not know may still be heard.
    if (m_speech && fit.verdict == FitVerdict::Unsure) {
        Fit heard = Timed(titles, *m_speech, seconds.fit);
        if (!m_titles || heard.verdict != FitVerdict::Unsure)
            fit = std::move(heard);
    }
    return fit;
}
