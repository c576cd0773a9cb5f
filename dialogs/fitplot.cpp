#include "dialogs/fitplot.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// The graph shows at least this range of moves, so that noise stays small.
constexpr double SmallestRange = 1;
constexpr double Margin = 0.08;
/// Dots further from the lines than the lines from each other would flatten the graph.
constexpr double FarDots = 1;

struct Range {
    double from = 0;
    double to = 0;

    double Part(double value) const { return (value - from) / (to - from); }
    void Include(double value) {
        from = std::min(from, value);
        to = std::max(to, value);
    }
};

double Move(const FitPiece& piece, double start) {
    return start * (piece.rate - 1) + piece.offset;
}

bool Usable(const FitTitle& title) {
    return std::isfinite(title.start);
}

Range TimesOf(std::span<const FitTitle> titles) {
    Range range{0, 1};
    for (const FitTitle& title : titles) {
        if (Usable(title))
            range.Include(title.start);
    }
    return range;
}

double StartOf(std::span<const FitTitle> titles, std::int32_t number) {
    const auto place = static_cast<std::size_t>(number - 1);
    return number >= 1 && place < titles.size() && Usable(titles[place]) ? titles[place].start : 0;
}

Range MovesOf(const Fit& fit, std::span<const FitTitle> titles) {
    Range range;
    for (const FitPiece& piece : fit.pieces) {
        range.Include(Move(piece, StartOf(titles, piece.first)));
        range.Include(Move(piece, StartOf(titles, piece.last)));
    }
    const double lack = std::max(0.0, SmallestRange - (range.to - range.from)) / 2;
    const double margin = (range.to - range.from + 2 * lack) * Margin + FarDots * 0.1 + lack;
    return {range.from - margin, range.to + margin};
}

std::vector<FitPlot::Tick> Ticks(const Range& range, int most) {
    std::vector<FitPlot::Tick> ticks;
    const double distance = TickDistance(range.to - range.from, most);
    const double first = std::ceil(range.from / distance);
    const auto count = static_cast<int>(std::floor(range.to / distance) - first) + 1;
    for (int i = 0; i < count; ++i) {
        const double value = (first + i) * distance;
        ticks.push_back({range.Part(value), std::abs(value) < distance / 2 ? 0 : value});
    }
    return ticks;
}

} // namespace

double TickDistance(double range, int most) {
    static constexpr std::array Minutes{60.0, 120.0, 300.0, 600.0, 900.0, 1800.0, 3600.0, 7200.0};
    const double least = range / std::max(most, 1);
    if (least > 30) {
        const auto* fits = std::lower_bound(Minutes.begin(), Minutes.end(), least);
        return fits != Minutes.end() ? *fits : std::ceil(least / 36000) * 36000;
    }
    const double power = std::pow(10, std::floor(std::log10(std::max(least, 1e-6))));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least * (1 - 1e-9))
            return factor * power;
    }
    return 10 * power;
}

FitPlot::FitPlot(const Fit& fit, std::span<const FitTitle> titles, int widest, int highest) {
    const Range along = TimesOf(titles);
    const Range up = MovesOf(fit, titles);
    zero = up.Part(0);
    times = Ticks(along, widest);
    moves = Ticks(up, highest);
    for (std::size_t i = 0; i < std::min(titles.size(), fit.titles.size()); ++i) {
        const FittedTitle& title = fit.titles[i];
        if (!Usable(titles[i]))
            continue;
        const bool placed =
            title.piece >= 0 && static_cast<std::size_t>(title.piece) < fit.pieces.size();
        const double rate = placed ? fit.pieces[static_cast<std::size_t>(title.piece)].rate : 1;
        const double move = titles[i].start * (rate - 1) + title.ownOffset;
        dots.push_back({along.Part(titles[i].start), std::clamp(up.Part(move), 0.0, 1.0),
                        placed ? title.piece : FittedTitle::NoPiece});
    }
    for (const FitPiece& piece : fit.pieces) {
        const double first = StartOf(titles, piece.first);
        const double last = StartOf(titles, piece.last);
        const Line line{along.Part(first), up.Part(Move(piece, first)), along.Part(last),
                        up.Part(Move(piece, last)), std::clamp(piece.confidence, 0.0, 1.0)};
        if (!pieces.empty())
            steps.push_back({pieces.back().x2, pieces.back().y2, line.x1, line.y1, 0});
        pieces.push_back(line);
    }
}
