#pragma once

#include "fit/fit.h"

#include <span>
#include <vector>

/// The graph of a fit, before anything is drawn: how far each title moves, over the time at
/// which it stands in the file. Places are parts of the graph's width and height, 0 to 1;
/// upward is later.
struct FitPlot {
    struct Dot {
        double x = 0;
        double y = 0;
        /// Of the piece that the title belongs to; -1: it has no place.
        std::int32_t piece = -1;
    };
    struct Line {
        double x1 = 0;
        double y1 = 0;
        double x2 = 0;
        double y2 = 0;
        double confidence = 0;
    };
    struct Tick {
        /// Along the axis.
        double at = 0;
        /// Seconds.
        double value = 0;
    };

    std::vector<Dot> dots;
    /// One for each piece, in their order.
    std::vector<Line> pieces;
    /// From the end of each piece to the beginning of the next.
    std::vector<Line> steps;
    std::vector<Tick> times;
    std::vector<Tick> moves;
    /// Where nothing is moved; outside 0 to 1 when that is not in the graph.
    double zero = 0;

    /// `widest`, `highest`: how many marks have room along each axis, at least 2.
    FitPlot(const Fit& fit, std::span<const FitTitle> titles, int widest, int highest);
};

/// Round distances between marks, of 1, 2 or 5 times a power of ten or, from a minute on, of
/// whole minutes, of which no more than `most` go into `range`.
double TickDistance(double range, int most);
