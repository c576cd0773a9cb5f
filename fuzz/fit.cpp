#include "fit/fit.h"

#include "fuzz/fuzzing.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace {

/// Takes numbers from the input; 0 when there is no more.
class Bytes {
  public:
    explicit Bytes(std::string_view bytes)
        : m_bytes(bytes) {}
    bool Empty() const { return m_bytes.empty(); }
    int Next() {
        if (m_bytes.empty())
            return 0;
        const auto byte = static_cast<unsigned char>(m_bytes.front());
        m_bytes.remove_prefix(1);
        return byte;
    }
    std::string Text(std::size_t length) {
        std::string text(m_bytes.substr(0, length));
        m_bytes.remove_prefix(std::min(length, m_bytes.size()));
        return text;
    }

  private:
    std::string_view m_bytes;
};

constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();

std::vector<FitTitle> TitlesOf(Bytes& bytes, bool wild) {
    std::vector<FitTitle> titles(static_cast<std::size_t>(bytes.Next() % (wild ? 16 : 64)));
    double time = 0;
    for (FitTitle& title : titles) {
        const int gap = bytes.Next();
        const int length = bytes.Next();
        time += gap / 16.0;
        title.start = time;
        title.end = time + length / 50.0;
        title.text = bytes.Text(static_cast<std::size_t>(length / 4));
        if (!wild)
            continue;
        if (gap == 255)
            title.start = NoNumber;
        else if (gap == 254)
            title.start = -1e9;
        else if (gap % 16 == 15)
            title.start -= 30;
        if (length == 255)
            title.end = NoNumber;
    }
    return titles;
}

SpeechCurve CurveOf(Bytes& bytes) {
    SpeechCurve curve;
    curve.start = bytes.Next() - 128;
    while (!bytes.Empty() && curve.values.size() < 20000) {
        const auto length = static_cast<std::size_t>(bytes.Next() * 2);
        const int level = bytes.Next();
        const float value = level == 255 ? std::nanf("") : static_cast<float>(level - 20) / 200.0F;
        curve.values.insert(curve.values.end(), length, value);
    }
    return curve;
}

void RequireSound(const std::vector<FitTitle>& titles, const Fit& fit, bool inOrder) {
    Require(fit.titles.size() == titles.size(), "each title is answered");
    Require(fit.confidence >= 0 && fit.confidence <= 1, "a confidence is from 0 to 1");
    Require(!fit.cancelled, "nobody cancelled");
    for (const FitPiece& piece : fit.pieces) {
        Require(std::isfinite(piece.offset) && piece.rate > 0, "a piece is a line");
        Require(piece.first >= 1 && piece.first <= piece.last, "a piece has titles");
    }
    std::size_t without = 0;
    for (const FittedTitle& title : fit.titles) {
        const auto pieces = static_cast<std::int32_t>(fit.pieces.size());
        Require(title.piece >= FittedTitle::NoPiece && title.piece < pieces, "pieces are there");
        Require(std::isfinite(title.ownOffset), "an own place is one");
        Require(title.confidence >= 0 && title.confidence <= 1, "titles' confidences too");
        without += title.piece == FittedTitle::NoPiece ? 1U : 0U;
    }
    Require(fit.pieces.empty() || fit.withoutPlace.size() == without, "what has no place is named");

    const std::vector<FitTimes> times = ApplyFit(titles, fit);
    Require(times.size() == titles.size(), "no title is lost");
    for (std::size_t i = 0; inOrder && i < times.size(); ++i) {
        Require(times[i].start >= 0, "none starts before 0");
        Require(i == 0 || times[i].start >= times[i - 1].start, "titles keep their order");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(TextOf(data, size));
    const auto flags = static_cast<unsigned>(bytes.Next());
    const bool wild = (flags & 1U) != 0;
    const std::vector<FitTitle> titles = TitlesOf(bytes, wild);
    std::vector<FitAnchor> anchors((flags >> 1U) % 4);
    for (FitAnchor& anchor : anchors) {
        anchor.title = bytes.Next() - 2;
        anchor.start = bytes.Next() / 2.0;
    }
    const FitReference reference =
        (flags & 8U) != 0 ? FitReference(TitlesOf(bytes, wild)) : FitReference(CurveOf(bytes));
    FitOptions options;
    options.window = 15;
    options.threads = 1;
    const Fit fit = FindFit(titles, reference, anchors, {}, options);
    RequireSound(titles, fit, !wild && anchors.empty());

    const std::vector<FitTimes> times = ApplyFit(titles, fit);
    std::set<std::int32_t> met;
    for (auto anchor = anchors.rbegin(); anchor != anchors.rend() && !wild; ++anchor) {
        const auto place = static_cast<std::size_t>(anchor->title - 1);
        if (anchor->title >= 1 && place < titles.size() && met.insert(anchor->title).second)
            Require(std::abs(times[place].start - anchor->start) < 1e-6, "anchors are met");
    }

    options.threads = 3;
    const Fit again = FindFit(titles, reference, anchors, {}, options);
    Require(again.verdict == fit.verdict && again.confidence == fit.confidence &&
                again.pieces.size() == fit.pieces.size(),
            "the number of threads changes nothing");
    for (std::size_t i = 0; i < fit.pieces.size(); ++i)
        Require(again.pieces[i].offset == fit.pieces[i].offset, "nor the offsets");
    return 0;
}
