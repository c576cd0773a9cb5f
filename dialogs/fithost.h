#pragma once

#include "fit/fit.h"
#include "model/knownstarts.h"

#include <QRect>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What titles are fitted to, and where it comes from.
struct FitSource {
    /// How far the getting is; answering false gives it up.
    using Progress = std::function<bool(const char* phase, double done)>;
    struct Got {
        std::optional<FitReference> reference;
        /// Why there is none, for people.
        std::string why;
    };

    /// "the sound of the film", "the titles of right.srt": for the caption.
    std::string what;
    /// Runs on a thread of its own; may take as long as it needs, and is to look at its
    /// progress at least every 50 ms.
    std::function<Got(const Progress& progress)> get;
};

/// What the fitting dialog needs of the window that has the film.
class FitHost {
  public:
    virtual ~FitHost() = default;

    virtual SUBTITLES& FitTitles() = 0;
    /// Titles that a person has placed: they stay, and the fit goes by them.
    virtual std::span<const KnownStarts::Known> PlacedTitles() const { return {}; }
    /// Further titles, with the starts that the fit is to meet.
    virtual std::vector<FitAnchor> FitAnchors() const = 0;
    /// Where picture and sound are on the screen, to be kept in sight; empty where they are not.
    virtual QRect FilmPlace() const { return {}; }
    /// Plays this part of the film and stops; nothing without a film.
    virtual void Listen(double from, double to) = 0;
    /// Shows these times in the film's place of the present ones, until they are taken
    /// back by an empty list. One for each title.
    virtual void ShowProposed(std::span<const FitTimes> times) = 0;
    /// The titles got the times that were proposed: the rows of these changed.
    virtual void Fitted(std::span<const std::int32_t> rows) = 0;
};
