#pragma once

#include "lane/laneground.h"

#include <QColor>
#include <QPalette>

/// The lane's colours in a light or dark palette.
struct LanePalette {
    LaneColours ground;
    QColor words;
    QColor chosenWords;
    QColor rulerWords;
    QColor rulerLines;
    QColor position;
    QColor current;
    QColor placing;
    QColor proposed;
    QColor selection;
    QColor blueMark;
    QColor greenMark;
    QColor bubble;
    QColor bubbleWords;
};

LanePalette LanePaletteOf(const QPalette& palette);
