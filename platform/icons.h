#pragma once

#include <QColor>
#include <QIcon>

class QPainter;
class QRectF;

/// The signs on buttons. They are drawn in the colour of the application's button texts,
/// flags in their own, sharp at every size.
enum class Sign {
    None,
    Undo,
    Find,
    Italic,
    Spelling,
    Edit,
    Insert,
    Delete,
    Sooner,
    Later,
    Shorter,
    Longer,
    Stretch,
    Shift,
    Bye,
    Play,
    Pause,
    Stop,
    Sound,
    Silence,
    Note,
    Lane,
    Fit,
    BlueFlag,
    GreenFlag,
    StretchToMarks,
    Clear,
};

QIcon DrawnIcon(Sign sign);

/// Draws the sign into the rectangle, as large as its shorter side allows. `ink` takes the
/// place of all its colours.
void DrawSign(QPainter& painter, Sign sign, const QRectF& place, const QColor& ink);
