#include "lane/lanecolours.h"

namespace {

constexpr int Middle = 128;

LanePixel Pixel(const QColor& colour) {
    return colour.rgb() | 0xff000000U;
}

QColor Blend(const QColor& one, const QColor& other, double share) {
    return QColor::fromRgb(Mixed(Pixel(one), Pixel(other), share));
}

} // namespace

LanePalette LanePaletteOf(const QPalette& palette) {
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    const bool dark = base.lightness() < Middle;
    const QColor speech = dark ? QColor(94, 203, 190) : QColor(0, 128, 117);
    const QColor block = dark ? QColor(120, 150, 210) : QColor(70, 105, 180);
    LanePalette colours;
    colours.ground.ground = Pixel(base);
    colours.ground.unknown = Pixel(Blend(base, text, 0.08));
    colours.ground.speechGround = Pixel(Blend(base, speech, dark ? 0.16 : 0.10));
    colours.ground.wave = Pixel(Blend(base, text, 0.45));
    colours.ground.speechWave = Pixel(Blend(base, speech, 0.85));
    colours.ground.ruler = Pixel(palette.color(QPalette::Window));
    colours.ground.block = Pixel(block);
    colours.ground.chosen = Pixel(highlight);
    colours.words = text;
    colours.chosenWords = text;
    colours.rulerWords = palette.color(QPalette::WindowText);
    colours.rulerLines = Blend(palette.color(QPalette::Window), colours.rulerWords, 0.45);
    colours.position = dark ? QColor(255, 110, 96) : QColor(214, 40, 40);
    colours.current = dark ? QColor(255, 214, 90) : QColor(233, 160, 0);
    colours.placing = colours.position;
    colours.proposed = dark ? QColor(225, 150, 255) : QColor(140, 30, 190);
    colours.selection = highlight;
    colours.blueMark = dark ? QColor(110, 150, 255) : QColor(30, 80, 220);
    colours.greenMark = dark ? QColor(100, 210, 110) : QColor(20, 140, 40);
    colours.bubble = palette.color(QPalette::ToolTipBase);
    colours.bubbleWords = palette.color(QPalette::ToolTipText);
    return colours;
}
