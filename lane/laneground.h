#pragma once

#include "lane/laneshape.h"
#include "lane/lanetitles.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class SoundMap;

/// A pixel as screens take it: opaque, 0xffRRGGBB.
using LanePixel = std::uint32_t;

/// The part between two colours, 0 to 1 of the way to the other.
LanePixel Mixed(LanePixel colour, LanePixel other, double share);

/// What the lane's ground is painted with.
struct LaneColours {
    /// Where nothing lies, where the map has not grown to yet, and behind speech.
    LanePixel ground = 0;
    LanePixel unknown = 0;
    LanePixel speechGround = 0;
    /// The sound's loudness; its peaks lie between this and the ground.
    LanePixel wave = 0;
    LanePixel speechWave = 0;
    LanePixel ruler = 0;
    LanePixel block = 0;
    LanePixel chosen = 0;
};

/// A piece of the lane to paint, in pixels of the screen.
struct LanePiece {
    LanePixel* pixels = nullptr;
    /// Pixels from one row to the next.
    std::size_t stride = 0;
    int width = 0;
    /// The first pixel's time, and seconds in a pixel, of the screen.
    double from = 0;
    double step = 1;
    /// In pixels of the screen too.
    LaneShape shape;
};

/// What lies on the lane.
struct LaneContents {
    /// Null: no sound is known.
    const SoundMap* sound = nullptr;
    const LaneTitles* titles = nullptr;
    /// A value for each title in the list's order, not 0 for a chosen one; there may be none.
    std::span<const std::uint8_t> chosen;
};

/// Paints the ground of the lane pixel by pixel: the sound, where speech is, and the titles as
/// blocks. What is painted by pens and in letters comes over it. It keeps the memory it works in.
class LaneGround {
  public:
    void Look(const LaneColours& colours);
    /// true: everything was known of the sound, so that it need not be painted again.
    bool Paint(const LanePiece& piece, const LaneContents& contents);

  private:
    enum Cover : std::uint8_t { Free, Block, BlockEdge, Chosen, ChosenEdge };
    static constexpr std::size_t Covers = 5;
    /// The probability of speech in so many steps.
    static constexpr std::size_t Tints = 9;
    /// Outside the sound, its peaks, and its loudness.
    struct Shades {
        LanePixel outside;
        LanePixel peak;
        LanePixel loud;
    };
    /// Of each column of pixels: the rows that sound fills, from the first one up to the
    /// last, and the colours. One array for each, so that a row is painted many pixels at a time.
    struct Rows {
        std::vector<std::int32_t> top;
        std::vector<std::int32_t> bottom;
        void Resize(std::size_t width);
    };
    struct Colours {
        std::vector<LanePixel> outside;
        std::vector<LanePixel> peak;
        std::vector<LanePixel> loud;
        void Resize(std::size_t width);
    };

    bool MeasureSound(const LanePiece& piece, const SoundMap* sound);
    void CoverTrack(const LanePiece& piece, const LaneContents& contents, int track);
    void PaintRow(LanePixel* row, std::int32_t y, std::size_t width) const;
    void PaintTrack(const LanePiece& piece, int track);

    std::array<std::array<Shades, Tints>, Covers> m_shades{};
    std::array<LanePixel, Covers> m_rims{};
    LaneColours m_colours;
    Rows m_peak;
    Rows m_loud;
    std::vector<std::uint8_t> m_tints;
    std::vector<std::uint8_t> m_known;
    std::vector<std::uint8_t> m_cover;
    Colours m_shade;
};
