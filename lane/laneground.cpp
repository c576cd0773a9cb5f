#include "lane/laneground.h"

#include "sound/soundmap.h"

#include <algorithm>
#include <cmath>

namespace {

/// A shape of plain loudness would leave most of the lane empty.
double Height(double amplitude) {
    return std::sqrt(std::clamp(amplitude, 0.0, 1.0));
}

constexpr double PeakShare = 0.45;
constexpr double BlockShare = 0.30;
constexpr double ChosenShare = 0.55;
constexpr double EdgeShare = 0.85;
/// Below this many pixels the edges of a block would hide the sound.
constexpr int NarrowestEdged = 5;
/// Times that lie on a pixel's edge are not to fall to either side of it by chance.
constexpr double Slack = 1e-6;
constexpr double DecibelsPerFactor = 20;
constexpr int ChannelBits = 8;
constexpr LanePixel ChannelMask = 0xff;
constexpr LanePixel Opaque = 0xff000000;

/// The row that begins nearest to there; never above the first one.
int RowOf(double y) {
    return static_cast<int>(y + 0.5);
}

/// The height of this loudness, from a table: powers would cost more than the rest of a column.
double LoudHeight(double decibels) {
    constexpr int Steps = 4;
    constexpr auto Count = static_cast<std::size_t>(-Silence) * Steps + 1;
    static const std::array<double, Count> Heights = [] {
        std::array<double, Count> heights{};
        for (std::size_t i = 1; i < Count; ++i)
            heights[i] = Height(std::pow(10.0, (static_cast<double>(i) / Steps + double{Silence}) /
                                                   DecibelsPerFactor));
        return heights;
    }();
    const double step = (decibels - double{Silence}) * Steps;
    return Heights[static_cast<std::size_t>(std::clamp(step, 0.0, static_cast<double>(Count - 1)))];
}

/// Speech is found later than the sound's shape, page by page.
bool SpeechIsKnown(const LanePiece& piece, const SoundMap* sound) {
    if (sound == nullptr || sound->Complete())
        return sound != nullptr;
    constexpr double WithinAPage = 2.5;
    const double to = std::min(piece.from + piece.width * piece.step, sound->Length());
    for (double time = piece.from; time < to; time += WithinAPage)
        if (!sound->Speech(time))
            return false;
    return to >= sound->Length() || sound->Speech(to).has_value();
}

} // namespace

LanePixel Mixed(LanePixel colour, LanePixel other, double share) {
    LanePixel mixed = Opaque;
    for (int shift = 0; shift < 3 * ChannelBits; shift += ChannelBits) {
        const double one = (colour >> shift) & ChannelMask;
        const double two = (other >> shift) & ChannelMask;
        mixed |= static_cast<LanePixel>(std::lround(one + (two - one) * share)) << shift;
    }
    return mixed;
}

void LaneGround::Look(const LaneColours& colours) {
    m_colours = colours;
    for (std::size_t tint = 0; tint < Tints; ++tint) {
        const double speech = static_cast<double>(tint) / (Tints - 1);
        const LanePixel ground = Mixed(colours.ground, colours.speechGround, speech);
        const LanePixel wave = Mixed(colours.wave, colours.speechWave, speech);
        const Shades plain{ground, Mixed(ground, wave, PeakShare), wave};
        const auto cover = [&](Cover kind, LanePixel colour, double share) {
            // The sound stays to be seen through a block.
            m_shades[kind][tint] = {Mixed(plain.outside, colour, share),
                                    Mixed(plain.peak, colour, share * 0.8),
                                    Mixed(plain.loud, colour, share * 0.6)};
        };
        m_shades[Free][tint] = plain;
        cover(Block, colours.block, BlockShare);
        cover(Chosen, colours.chosen, ChosenShare);
        const LanePixel edge = Mixed(colours.ground, colours.block, EdgeShare);
        m_shades[BlockEdge][tint] = {edge, edge, edge};
        m_shades[ChosenEdge][tint] = {colours.chosen, colours.chosen, colours.chosen};
        m_rims[Block] = m_rims[BlockEdge] = edge;
    }
    m_rims[Chosen] = m_rims[ChosenEdge] = colours.chosen;
}

void LaneGround::Rows::Resize(std::size_t width) {
    top.resize(width);
    bottom.resize(width);
}

void LaneGround::Colours::Resize(std::size_t width) {
    outside.resize(width);
    peak.resize(width);
    loud.resize(width);
}

bool LaneGround::MeasureSound(const LanePiece& piece, const SoundMap* sound) {
    const auto width = static_cast<std::size_t>(piece.width);
    std::vector<SoundColumn> heard(width);
    if (sound != nullptr)
        sound->Columns(piece.from, piece.step, heard);
    m_peak.Resize(width);
    m_loud.Resize(width);
    m_tints.resize(width);
    m_known.resize(width);
    const double half = (piece.shape.height - piece.shape.ruler) / 2;
    const double middle = piece.shape.ruler + half;
    bool complete = SpeechIsKnown(piece, sound);
    for (std::size_t x = 0; x < width; ++x) {
        const SoundColumn& column = heard[x];
        const double least = std::min(0.0, static_cast<double>(column.least));
        const double greatest = std::max(0.0, static_cast<double>(column.greatest));
        const double loud = LoudHeight(double{column.loudness});
        m_peak.top[x] = RowOf(middle - half * Height(greatest));
        m_peak.bottom[x] = RowOf(middle + half * Height(-least));
        m_loud.top[x] = RowOf(middle - half * loud);
        m_loud.bottom[x] = RowOf(middle + half * loud);
        m_tints[x] = static_cast<std::uint8_t>(
            std::lround(std::clamp(double{column.speech}, 0.0, 1.0) * (Tints - 1)));
        m_known[x] = column.known ? 1 : 0;
        complete = complete && column.known;
    }
    return complete;
}

void LaneGround::CoverTrack(const LanePiece& piece, const LaneContents& contents, int track) {
    m_cover.assign(static_cast<std::size_t>(piece.width), Free);
    if (contents.titles == nullptr)
        return;
    const LaneTitles& titles = *contents.titles;
    const double to = piece.from + piece.width * piece.step;
    // A block that begins to the left still has its edge there.
    titles.Within(piece.from - piece.step, to, [&](std::int32_t title) {
        if (titles.Track(title) != track)
            return;
        const auto place = [&](double time) {
            const double pixel = (time - piece.from) / piece.step + Slack;
            return std::floor(
                std::clamp<double>(pixel, -NarrowestEdged, piece.width + NarrowestEdged));
        };
        const int left = static_cast<int>(place(titles.Start(title)));
        const int right = std::max(
            left + 1, static_cast<int>(place(std::max(titles.Start(title), titles.End(title)))));
        const auto index = static_cast<std::size_t>(title) - 1;
        const bool chosen = index < contents.chosen.size() && contents.chosen[index] != 0;
        const bool edged = right - left >= NarrowestEdged;
        const std::uint8_t inside = chosen ? Chosen : Block;
        const std::uint8_t edge = chosen ? ChosenEdge : BlockEdge;
        for (int x = std::max(0, left); x < std::min(right, piece.width); ++x)
            m_cover[static_cast<std::size_t>(x)] =
                edged && (x == left || x == right - 1) ? edge : inside;
    });
}

/// The lane's most frequent work: no branches, so that the compiler paints several pixels
/// at a time.
void LaneGround::PaintRow(LanePixel* row, std::int32_t y, std::size_t width) const {
    const std::int32_t* const peakTop = m_peak.top.data();
    const std::int32_t* const peakBottom = m_peak.bottom.data();
    const std::int32_t* const loudTop = m_loud.top.data();
    const std::int32_t* const loudBottom = m_loud.bottom.data();
    const LanePixel* const outside = m_shade.outside.data();
    const LanePixel* const peak = m_shade.peak.data();
    const LanePixel* const loud = m_shade.loud.data();
    for (std::size_t x = 0; x < width; ++x) {
        const bool inPeak = (y >= peakTop[x]) & (y < peakBottom[x]);
        const bool inLoud = (y >= loudTop[x]) & (y < loudBottom[x]);
        const LanePixel quiet = inPeak ? peak[x] : outside[x];
        row[x] = inLoud ? loud[x] : quiet;
    }
}

void LaneGround::PaintTrack(const LanePiece& piece, int track) {
    const auto width = static_cast<std::size_t>(piece.width);
    m_shade.Resize(width);
    for (std::size_t x = 0; x < width; ++x) {
        const bool unknown = m_known[x] == 0 && m_cover[x] == Free;
        const Shades shades = unknown
                                  ? Shades{m_colours.unknown, m_colours.unknown, m_colours.unknown}
                                  : m_shades[m_cover[x]][m_tints[x]];
        m_shade.outside[x] = shades.outside;
        m_shade.peak[x] = shades.peak;
        m_shade.loud[x] = shades.loud;
    }
    const int top = RowOf(piece.shape.TrackTop(track));
    const int bottom = std::min(RowOf(piece.shape.TrackTop(track + 1)), RowOf(piece.shape.height));
    // Most films are quiet for most of the time.
    const auto highest = std::min(*std::min_element(m_peak.top.begin(), m_peak.top.end()),
                                  *std::min_element(m_loud.top.begin(), m_loud.top.end()));
    const auto lowest = std::max(*std::max_element(m_peak.bottom.begin(), m_peak.bottom.end()),
                                 *std::max_element(m_loud.bottom.begin(), m_loud.bottom.end()));
    for (int y = top; y < bottom; ++y) {
        LanePixel* const row = piece.pixels + static_cast<std::size_t>(y) * piece.stride;
        if (y < highest || y >= lowest)
            std::copy(m_shade.outside.begin(), m_shade.outside.end(), row);
        else
            PaintRow(row, y, width);
    }
    // The blocks' upper and lower rims.
    for (const int y : {top, bottom - 1}) {
        LanePixel* const row = piece.pixels + static_cast<std::size_t>(y) * piece.stride;
        for (std::size_t x = 0; x < width; ++x)
            if (m_cover[x] != Free)
                row[x] = m_rims[m_cover[x]];
    }
}

bool LaneGround::Paint(const LanePiece& piece, const LaneContents& contents) {
    for (int y = 0; y < std::min(RowOf(piece.shape.ruler), RowOf(piece.shape.height)); ++y) {
        LanePixel* const row = piece.pixels + static_cast<std::size_t>(y) * piece.stride;
        std::fill(row, row + piece.width, m_colours.ruler);
    }
    const bool complete = MeasureSound(piece, contents.sound);
    for (int track = 0; track < piece.shape.tracks; ++track) {
        CoverTrack(piece, contents, track);
        PaintTrack(piece, track);
    }
    return complete;
}
