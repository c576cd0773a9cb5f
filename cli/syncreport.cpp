#include "cli/syncreport.h"

#include "model/numbers.h"

#include <cmath>

namespace {

std::string Milliseconds(double value) {
    return RoundedText(value, 1e-3);
}

std::string Share(double value) {
    return RoundedText(value, 1e-4);
}

std::string ListOf(const std::vector<std::int32_t>& numbers) {
    std::string list = "[";
    for (const std::int32_t number : numbers)
        list += (list.size() > 1 ? ", " : "") + std::to_string(number);
    return list + "]";
}

std::string PieceOf(const FitPiece& piece) {
    return R"({"first": )" + std::to_string(piece.first) + R"(, "last": )" +
           std::to_string(piece.last) + R"(, "offset": )" + Milliseconds(piece.offset) +
           R"(, "rate": )" + RoundedText(piece.rate, 1e-9) + R"(, "confidence": )" +
           Share(piece.confidence) + "}";
}

} // namespace

std::string RoundedText(double value, double step) {
    return NumberText(std::floor(value / step + 0.5) * step);
}

const char* VerdictName(FitVerdict verdict) {
    switch (verdict) {
    case FitVerdict::Right:
        return "right";
    case FitVerdict::Fitted:
        return "fitted";
    default:
        return "unsure";
    }
}

std::string ReportOf(const Fit& fit, const char* by, const FitSeconds& seconds) {
    std::string pieces;
    for (const FitPiece& piece : fit.pieces)
        pieces += (pieces.empty() ? "\n  " : ",\n  ") + PieceOf(piece);
    return R"({"verdict": ")" + std::string(VerdictName(fit.verdict)) + R"(", "confidence": )" +
           Share(fit.confidence) + R"(, "by": ")" + by + R"(",)" + "\n" + R"( "pieces": [)" +
           pieces + "],\n" + R"( "withoutPlace": )" + ListOf(fit.withoutPlace) +
           R"(, "beforeZero": )" + ListOf(fit.beforeZero) + ",\n" + R"( "seconds": {"decode": )" +
           Milliseconds(seconds.decode) + R"(, "speech": )" + Milliseconds(seconds.speech) +
           R"(, "fit": )" + Milliseconds(seconds.fit) + "}}\n";
}

std::string SummaryOf(const Fit& fit) {
    std::string summary = VerdictName(fit.verdict);
    if (fit.verdict == FitVerdict::Fitted) {
        const FitPiece& piece = fit.pieces.front();
        summary += fit.pieces.size() == 1
                       ? ": "
                       : ": " + std::to_string(fit.pieces.size()) + " pieces, the first ";
        summary += ThousandthsText(piece.offset) + " s";
        if (piece.rate != 1)
            summary += ", rate " + Share(piece.rate);
    }
    summary += ", sure " + RoundedText(fit.confidence, 0.01);
    if (fit.verdict != FitVerdict::Unsure && !fit.withoutPlace.empty())
        summary += ", " + std::to_string(fit.withoutPlace.size()) + " titles without a place";
    return summary;
}
