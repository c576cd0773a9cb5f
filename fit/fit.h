#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <variant>
#include <vector>

/// Finds how titles have to be moved so that they fit a film's speech, or the times
/// of titles that are known to be right. All moments are seconds; a title has the
/// time "old" before and "new" after, and new = old x rate + offset.
///
/// The same input gives the same answer on every machine and with any number of
/// threads. Any input is taken: times that are no numbers, negative or unsorted, equal
/// starts, ends before starts, no titles at all. Texts are UTF-8 with the tags of
/// the model; anything else in them only makes the answer less sure.

struct FitTitle {
    double start = 0;
    double end = 0;
    std::string text;
};

/// What a detector of speech answers: one value for each 10 ms of the film, 0 (no
/// speech) to 1 (speech). Values outside are cut off, what is no number counts as 0.
/// The detector's own delay is taken off already.
struct SpeechCurve {
    static constexpr double Step = 0.01;
    /// The moment of the film at which the first value's 10 ms begin.
    double start = 0;
    std::vector<float> values;
};

/// Titles whose times are right: of another language, or split otherwise.
using RightTitles = std::vector<FitTitle>;
using FitReference = std::variant<SpeechCurve, RightTitles>;

/// A title whose new start is known; it is met exactly.
struct FitAnchor {
    /// 1 for the first; anchors of titles that are not there are left out.
    std::int32_t title = 0;
    double start = 0;
};

enum class FitVerdict {
    /// The titles fit as they are: no piece would move by more than 0.15 s.
    Right,
    /// The pieces say how to move them.
    Fitted,
    /// No answer can be trusted. The pieces hold the best guess, which may be none.
    Unsure,
};

/// Titles that move together.
struct FitPiece {
    /// Title numbers, from 1. Of titles that are not in the order of their starts,
    /// the smallest and the largest number; `FittedTitle::piece` is always exact.
    std::int32_t first = 0;
    std::int32_t last = 0;
    double offset = 0;
    double rate = 1;
    /// 0 to 1: how likely it is that nearly all titles of the piece come to their places.
    double confidence = 0;
};

/// What was found for one title.
struct FittedTitle {
    static constexpr std::int32_t NoPiece = -1;
    /// Index into the pieces; `NoPiece` for a title that has no place in the film.
    std::int32_t piece = NoPiece;
    /// An anchor says where it starts.
    bool anchored = false;
    /// The offset that this title and its neighbours ask for by themselves, at the
    /// rate of its piece: a dot of a graph of offset over time.
    double ownOffset = 0;
    /// Where the title's own speech begins, less its new start: -1 to 1; 0 when none
    /// begins near it.
    double residual = 0;
    /// 0 to 1: how likely the new place is right.
    double confidence = 0;
};

struct Fit {
    FitVerdict verdict = FitVerdict::Unsure;
    /// 0 to 1, of the verdict's being right; of the best guess when unsure.
    double confidence = 0;
    bool cancelled = false;
    /// Speech is clear and the titles are many, and yet none of them is at home in it: they
    /// belong to another film. Only with `Unsure`.
    bool elsewhere = false;
    /// In the order of the titles' starts.
    std::vector<FitPiece> pieces;
    /// One for each title given, in their order.
    std::vector<FittedTitle> titles;
    /// Numbers of the titles that have no place in the film; ascending. They were cut
    /// out with their piece, or lie before its start or behind its end.
    std::vector<std::int32_t> withoutPlace;
    /// Numbers of the titles that would start before 0; ascending. `ApplyFit` lets
    /// them start at 0.
    std::vector<std::int32_t> beforeZero;
};

/// How far the work has come, 0 to 1; answering false cancels it. Called on the
/// caller's thread, at least every 50 ms. May be empty.
using FitProgress = std::function<bool(double)>;

struct FitOptions {
    /// How far a title may be moved, in seconds, beyond what the lengths of film and
    /// titles and the anchors ask for.
    double window = 300;
    /// Threads to work with; 0: as many as the machine has.
    unsigned threads = 0;
};

Fit FindFit(std::span<const FitTitle> titles, const FitReference& reference,
            std::span<const FitAnchor> anchors = {}, const FitProgress& progress = {},
            const FitOptions& options = {});

struct FitTimes {
    double start = 0;
    double end = 0;
};

/// The new times of all titles, in their order. Only pieces with true in `chosen` move
/// (all when it is empty); the others keep their times. Titles without a place follow the
/// piece before them (or else behind them) no further than to the start of the next title,
/// so that none is lost. Among the titles that move the order of starts is kept: where
/// pieces meet, a title may start a little earlier than its piece says. Titles with an
/// anchor start where that says, whatever becomes of the order. Lengths change by the
/// piece's rate. None starts before 0 that did not before.
std::vector<FitTimes> ApplyFit(std::span<const FitTitle> titles, const Fit& fit,
                               const std::vector<bool>& chosen = {});
