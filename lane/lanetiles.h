#pragma once

#include "lane/lanecolours.h"
#include "lane/laneground.h"
#include "lane/laneview.h"

#include <QFont>
#include <QImage>
#include <QRect>
#include <QStaticText>
#include <QString>

#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

class QPainter;

/// The lane as it stands, without what moves over it: sound, titles with their words, time
/// ruler. It is painted in tiles that are kept, so that following a film moves pictures
/// instead of painting them.
class LaneTiles {
  public:
    /// A title's words on a line of their own each, without tags.
    using Words = std::function<QString(std::int32_t title)>;

    struct Scene {
        const LaneView& view;
        /// In the widget's pixels.
        const LaneShape& shape;
        LaneContents contents;
        const Words& words;
        /// The screen's pixels in one of the widget's.
        double ratio = 1;
    };

    void Look(const LanePalette& colours, const QFont& font);
    /// Titles, words or selection have changed.
    void Forget();
    void ForgetWords();
    /// The sound's map has grown: what lacked some of it is painted again.
    void ForgetUnfinished();

    void Draw(QPainter& painter, const QRect& dirty, const Scene& scene);

  private:
    struct Tile {
        QImage image;
        bool complete = false;
    };
    /// What makes all tiles useless when it changes.
    struct Make {
        double step = 0;
        double height = 0;
        double ruler = 0;
        int tracks = 0;
        double ratio = 0;
        friend bool operator==(const Make&, const Make&) = default;
    };

    struct LaidOut {
        QStaticText text;
        /// No line was cut below this room.
        double room = 0;
    };

    template <typename Unwanted>
    void Drop(const Unwanted& unwanted);
    QImage FreeImage(const QSize& size);
    Tile Paint(std::int64_t number, const Scene& scene);
    void PaintRuler(QPainter& painter, double left, const Scene& scene) const;
    void PaintWords(QPainter& painter, double left, const Scene& scene);
    /// As many letters of each line as can be seen in this room, at least.
    const QStaticText& WordsOf(std::int32_t title, double room, const Scene& scene);

    LanePalette m_colours;
    QFont m_font;
    LaneGround m_ground;
    Make m_make;
    std::unordered_map<std::int64_t, Tile> m_tiles;
    std::vector<QImage> m_free;
    std::unordered_map<std::int32_t, LaidOut> m_words;
    double m_narrowestLetter = 1;
};
