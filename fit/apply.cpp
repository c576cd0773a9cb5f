#include "fit/fit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

bool Chosen(const std::vector<bool>& chosen, std::int32_t piece) {
    const auto place = static_cast<std::size_t>(piece);
    return chosen.empty() || (place < chosen.size() && chosen[place]);
}

/// The titles by their starts, equal ones as given; those whose start is no number last.
std::vector<std::size_t> InOrder(std::span<const FitTitle> titles) {
    std::vector<std::size_t> order(titles.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto key = [&](std::size_t i) {
        const double start = titles[i].start;
        return std::isnan(start) ? std::numeric_limits<double>::infinity() : start;
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
    return order;
}

FitTimes Moved(const FitTitle& title, const FitPiece& piece) {
    return {title.start * piece.rate + piece.offset, title.end * piece.rate + piece.offset};
}

void StartAt(FitTimes& times, double start) {
    times.end += start - times.start;
    times.start = start;
}

} // namespace

std::vector<FitTimes> ApplyFit(std::span<const FitTitle> titles, const Fit& fit,
                               const std::vector<bool>& chosen) {
    std::vector<FitTimes> times(titles.size());
    for (std::size_t i = 0; i < titles.size(); ++i)
        times[i] = {titles[i].start, titles[i].end};
    const auto pieceOf = [&](std::size_t title) {
        const std::int32_t piece =
            title < fit.titles.size() ? fit.titles[title].piece : FittedTitle::NoPiece;
        return piece >= 0 && static_cast<std::size_t>(piece) < fit.pieces.size()
                   ? piece
                   : FittedTitle::NoPiece;
    };

    const std::vector<std::size_t> order = InOrder(titles);
    // The piece before each title without a place, or else the one behind it.
    std::vector<std::int32_t> pieces(titles.size(), FittedTitle::NoPiece);
    std::int32_t last = FittedTitle::NoPiece;
    for (const std::size_t i : order) {
        if (pieceOf(i) != FittedTitle::NoPiece)
            last = pieceOf(i);
        pieces[i] = last;
    }
    for (auto i = order.rbegin(); i != order.rend(); ++i) {
        if (pieces[*i] == FittedTitle::NoPiece)
            pieces[*i] = last;
        last = pieces[*i];
    }

    // The start of the next title, and of the next one that moves to a place.
    double next = std::numeric_limits<double>::infinity();
    double nextPlaced = next;
    for (auto at = order.rbegin(); at != order.rend(); ++at) {
        const std::size_t i = *at;
        if (pieces[i] == FittedTitle::NoPiece || !Chosen(chosen, pieces[i])) {
            next = times[i].start;
            continue;
        }
        times[i] = Moved(titles[i], fit.pieces[static_cast<std::size_t>(pieces[i])]);
        const bool placed = pieceOf(i) != FittedTitle::NoPiece;
        const double limit = placed ? nextPlaced : std::min(next, nextPlaced);
        if (times[i].start > limit && !(placed && fit.titles[i].anchored))
            StartAt(times[i], limit);
        if (times[i].start < 0 && !(titles[i].start < 0))
            StartAt(times[i], 0);
        if (placed)
            next = nextPlaced = times[i].start;
    }
    return times;
}
