#include "lane/lanetiles.h"

#include "lane/laneruler.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// In the widget's pixels; the screen's pixels in it are whole ones at every usual scale.
constexpr int TileWidth = 256;
/// Tiles beside those in sight that are kept.
constexpr int SpareTiles = 16;
constexpr std::size_t MostFree = 64;
constexpr int MostWords = 2000;
constexpr double LabelRoom = 76;
/// Narrower blocks would show three letters.
constexpr double NarrowestWords = 40;
constexpr double WordsInset = 4;
constexpr double LabelledTick = 6;
constexpr double PlainTick = 3;

/// Laying letters out costs more than all else of a tile, and most of them would be clipped away.
QString Cut(const QString& words, qsizetype letters) {
    if (words.size() <= letters)
        return words;
    QStringList lines = words.split(QLatin1Char('\n'));
    for (QString& line : lines)
        line.truncate(letters);
    return lines.join(QLatin1Char('\n'));
}

} // namespace

void LaneTiles::Look(const LanePalette& colours, const QFont& font) {
    m_colours = colours;
    m_font = font;
    // Half of a narrow one: some are narrower.
    m_narrowestLetter = std::max(1.0, QFontMetricsF(font).horizontalAdvance(QLatin1Char('i')) / 2);
    m_ground.Look(colours.ground);
    ForgetWords();
}

void LaneTiles::Forget() {
    Drop([](std::int64_t /*number*/, const Tile& /*tile*/) { return true; });
}

/// The images of tiles that are no longer wanted are painted again: fresh memory costs more
/// than a tile.
template <typename Unwanted>
void LaneTiles::Drop(const Unwanted& unwanted) {
    std::erase_if(m_tiles, [&](auto& entry) {
        if (!unwanted(entry.first, entry.second))
            return false;
        if (m_free.size() < MostFree)
            m_free.push_back(std::move(entry.second.image));
        return true;
    });
}

QImage LaneTiles::FreeImage(const QSize& size) {
    while (!m_free.empty()) {
        QImage image = std::move(m_free.back());
        m_free.pop_back();
        if (image.size() == size)
            return image;
    }
    return {size, QImage::Format_RGB32};
}

void LaneTiles::ForgetWords() {
    m_words.clear();
    Forget();
}

void LaneTiles::ForgetUnfinished() {
    Drop([](std::int64_t /*number*/, const Tile& tile) { return !tile.complete; });
}

void LaneTiles::Draw(QPainter& painter, const QRect& dirty, const Scene& scene) {
    const Make make{scene.view.Step(), scene.shape.height, scene.shape.ruler, scene.shape.tracks,
                    scene.ratio};
    if (make != m_make) {
        Forget();
        m_make = make;
    }
    const auto tileAt = [&](int x) {
        return (scene.view.Offset() + x) / TileWidth;
    };
    const std::int64_t first = tileAt(std::max(0, dirty.left()));
    const std::int64_t last = tileAt(dirty.right());
    for (std::int64_t number = first; number <= last; ++number) {
        auto tile = m_tiles.find(number);
        if (tile == m_tiles.end())
            tile = m_tiles.emplace(number, Paint(number, scene)).first;
        const auto left = static_cast<int>(number * TileWidth - scene.view.Offset());
        painter.drawImage(left, 0, tile->second.image);
    }
    const std::int64_t inSight = scene.view.Width() / TileWidth + 2;
    if (static_cast<std::int64_t>(m_tiles.size()) > inSight + SpareTiles)
        Drop([&](std::int64_t number, const Tile& /*tile*/) {
            return number < tileAt(0) - SpareTiles / 2 ||
                   number > tileAt(0) + inSight + SpareTiles / 2;
        });
}

LaneTiles::Tile LaneTiles::Paint(std::int64_t number, const Scene& scene) {
    const double ratio = scene.ratio;
    const QSize size(qRound(TileWidth * ratio), std::max(1, qRound(scene.shape.height * ratio)));
    Tile tile;
    tile.image = FreeImage(size);
    tile.image.setDevicePixelRatio(1);
    LanePiece piece;
    piece.pixels = reinterpret_cast<LanePixel*>(tile.image.bits());
    piece.stride = static_cast<std::size_t>(tile.image.bytesPerLine()) / sizeof(LanePixel);
    piece.width = size.width();
    piece.step = scene.view.Step() / ratio;
    piece.from = static_cast<double>(number * TileWidth) * scene.view.Step();
    piece.shape = {static_cast<double>(size.height()), std::round(scene.shape.ruler * ratio),
                   scene.shape.tracks};
    tile.complete = m_ground.Paint(piece, scene.contents);
    tile.image.setDevicePixelRatio(ratio);
    QPainter painter(&tile.image);
    painter.setFont(m_font);
    const auto left = static_cast<double>(number * TileWidth);
    PaintRuler(painter, left, scene);
    PaintWords(painter, left, scene);
    return tile;
}

void LaneTiles::PaintRuler(QPainter& painter, double left, const Scene& scene) const {
    const double step = scene.view.Step();
    const RulerSteps steps = RulerStepsFor(step, LabelRoom);
    const double bottom = scene.shape.ruler;
    painter.setPen(m_colours.rulerWords);
    const auto tick = [&](double time, double height) {
        painter.fillRect(QRectF(std::round(time / step - left), bottom - height, 1, height),
                         m_colours.rulerLines);
    };
    const auto from = std::floor(left * step / steps.plain);
    const double to = (left + TileWidth) * step;
    for (double n = from; n * steps.plain <= to; ++n)
        tick(n * steps.plain, PlainTick);
    // A label may begin in the tile before.
    for (double n = std::max(0.0, std::floor((left - LabelRoom) * step / steps.labelled));
         n * steps.labelled <= to; ++n) {
        const double time = n * steps.labelled;
        tick(time, LabelledTick);
        const QFontMetricsF metrics(m_font);
        painter.drawText(QPointF(std::round(time / step - left) + 3, metrics.ascent()),
                         QString::fromStdString(RulerLabel(time, steps.labelled)));
    }
    painter.fillRect(QRectF(0, bottom - 1, TileWidth, 1), m_colours.rulerLines);
}

const QStaticText& LaneTiles::WordsOf(std::int32_t title, double room, const Scene& scene) {
    const auto found = m_words.find(title);
    if (found != m_words.end() && found->second.room >= room)
        return found->second.text;
    if (m_words.size() >= MostWords)
        m_words.clear();
    const auto letters = static_cast<qsizetype>(room / m_narrowestLetter) + 1;
    QStaticText text(Cut(scene.words(title), letters));
    text.setTextFormat(Qt::PlainText);
    LaidOut& words = m_words[title];
    words = {std::move(text), room};
    return words.text;
}

void LaneTiles::PaintWords(QPainter& painter, double left, const Scene& scene) {
    if (scene.contents.titles == nullptr || !scene.words)
        return;
    const LaneTitles& titles = *scene.contents.titles;
    const double step = scene.view.Step();
    painter.setPen(m_colours.words);
    titles.Within(left * step, (left + TileWidth) * step, [&](std::int32_t title) {
        const double begin = titles.Start(title) / step - left;
        const double width = (titles.End(title) - titles.Start(title)) / step;
        if (width < NarrowestWords)
            return;
        const QRectF room(begin + WordsInset, scene.shape.TrackTop(titles.Track(title)) + 1,
                          width - 2 * WordsInset, scene.shape.TrackHeight() - 2);
        painter.setClipRect(room);
        painter.drawStaticText(room.topLeft(), WordsOf(title, room.width(), scene));
    });
}
