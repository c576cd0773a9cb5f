#include "dialogs/fitwords.h"

#include "model/numbers.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <utility>

namespace {

constexpr std::array<double, 5> Rates{23.976, 24, 25, 29.97, 30};
/// Closer than two quotients of the usual rates lie together.
constexpr double SameRate = 0.0003;
/// Below this nobody sees that a title moves.
constexpr double SmallestMove = 0.02;
/// A hint is given only when this sure.
constexpr double SureEnough = 0.8;

std::string Seconds(double seconds, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f s", decimals, std::abs(seconds));
    return text;
}

/// The rates that titles were made for and that they go to.
std::optional<std::pair<double, double>> RatesOf(double factor) {
    for (const double from : Rates) {
        for (const double to : Rates) {
            if (from != to && std::abs(from / to - factor) < SameRate)
                return std::pair(from, to);
        }
    }
    return std::nullopt;
}

bool IsPlain(const FitPiece& piece) {
    return std::abs(piece.rate - 1) < SameRate / 3;
}

std::string Counted(std::size_t count, const char* one, const char* more) {
    return std::to_string(count) + (count == 1 ? one : more);
}

double MoveOf(const FitPiece& piece, std::span<const FitTitle> titles) {
    const auto first = static_cast<std::size_t>(piece.first - 1);
    const double start = first < titles.size() ? titles[first].start : 0;
    return start * piece.rate + piece.offset - start;
}

} // namespace

std::string PercentText(double part) {
    return std::to_string(static_cast<int>(std::floor(part * 100))) + " %";
}

std::string FitVerdictText(const Fit& fit) {
    if (fit.verdict == FitVerdict::Right)
        return "The titles fit as they are, " + PercentText(fit.confidence) +
               " sure. Nothing needs to be moved.";
    if (fit.elsewhere)
        return "No fit was found. The titles seem to belong to another film.";
    if (fit.verdict == FitVerdict::Unsure && fit.pieces.empty())
        return "No fit was found. The titles may belong to another film, or too little is "
               "spoken in this one.";
    std::string text =
        fit.verdict == FitVerdict::Unsure
            ? "No fit that can be trusted was found. The best guess is below; "
              "listen before you take any of it."
            : "A fit was found: " + Counted(fit.pieces.size(), " piece, ", " pieces, ") +
                  PercentText(fit.confidence) + " sure.";
    if (!fit.withoutPlace.empty())
        text += " " + Counted(fit.withoutPlace.size(), " title has", " titles have") +
                " no place in this film.";
    if (!fit.beforeZero.empty())
        text += " " + Counted(fit.beforeZero.size(), " title", " titles") +
                " would come before the film begins and will start with it.";
    return text;
}

std::string PieceTitlesText(const FitPiece& piece) {
    if (piece.first == piece.last)
        return std::to_string(piece.first);
    return std::to_string(piece.first) + " - " + std::to_string(piece.last);
}

std::string PieceMoveText(const FitPiece& piece, std::span<const FitTitle> titles) {
    const double move = MoveOf(piece, titles);
    if (std::abs(move) < SmallestMove)
        return "not moved";
    return Seconds(move, 2) + (move < 0 ? " earlier" : " later");
}

std::string PieceRateText(const FitPiece& piece) {
    if (IsPlain(piece))
        return "as it was";
    if (const auto rates = RatesOf(piece.rate))
        return NumberText(rates->first) + " to " + NumberText(rates->second);
    char text[32];
    std::snprintf(text, sizeof text, "x %.4f", piece.rate);
    return text;
}

std::string FitHintText(const Fit& fit, std::span<const FitTitle> titles, double filmRate) {
    if (fit.cancelled || titles.empty())
        return {};
    if (fit.verdict == FitVerdict::Unsure)
        return fit.elsewhere ? "These titles seem to belong to another film" : "";
    if (fit.confidence < SureEnough)
        return {};
    if (fit.verdict == FitVerdict::Right)
        return "The titles fit the sound";
    const FitPiece& piece = fit.pieces.front();
    if (fit.pieces.size() > 1)
        return "Made for another version of the film. Fit...";
    if (!IsPlain(piece)) {
        const auto rates = RatesOf(piece.rate);
        if (!rates)
            return "Made for another speed of the film. Fit...";
        // Titles stretched by a / b were made for a pictures a second.
        const bool known = filmRate > 0 && std::abs(filmRate - rates->second) < 0.01;
        return "Made for " + NumberText(rates->first) + " pictures a second, the film has " +
               NumberText(known ? filmRate : rates->second) + ". Fit...";
    }
    return "About " + Seconds(piece.offset, 1) + (piece.offset < 0 ? " late" : " early") +
           ". Fit...";
}

std::int32_t LeastSureTitle(const Fit& fit, std::int32_t piece) {
    std::int32_t least = 0;
    for (std::size_t i = 0; i < fit.titles.size(); ++i) {
        if (fit.titles[i].piece != piece)
            continue;
        const bool lessSure =
            least == 0 ||
            fit.titles[i].confidence < fit.titles[static_cast<std::size_t>(least - 1)].confidence;
        if (lessSure)
            least = static_cast<std::int32_t>(i + 1);
    }
    return least;
}

std::vector<std::int32_t> MovedTitles(std::span<const FitTitle> titles,
                                      std::span<const FitTimes> times) {
    std::vector<std::int32_t> moved;
    for (std::size_t i = 0; i < titles.size() && i < times.size(); ++i) {
        if (titles[i].start != times[i].start || titles[i].end != times[i].end)
            moved.push_back(static_cast<std::int32_t>(i + 1));
    }
    return moved;
}
