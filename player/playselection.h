#pragma once

#include <optional>

/// The part of the media that playback is limited to. A start below 0 means that
/// there is none, whatever the end; an end below 0 that there is no end.
struct PlaySelection {
    double start = -1;
    double end = -1;

    /// Where playing begins and where a stop returns to.
    double Start() const { return start > 0 ? start : 0; }
    /// Where playing pauses, if before the end of the media. An end that lies not
    /// after the start limits nothing: it is left over from another selection.
    std::optional<double> Limit(double length) const {
        const bool limits = start >= 0 && end > start && (length <= 0 || end < length);
        return limits ? std::optional(end) : std::nullopt;
    }
    /// The place to jump to before playing from here; nothing: play on.
    std::optional<double> JumpBeforePlay(double position, double length) const {
        const double last = Limit(length).value_or(length);
        const bool atEnd = last > 0 && position >= last;
        return atEnd || position < Start() ? std::optional(Start()) : std::nullopt;
    }
};
