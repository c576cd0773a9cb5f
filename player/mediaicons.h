#pragma once

#include <QColor>
#include <QIcon>

class QPainter;
class QPalette;
class QRectF;

enum class MediaShape { Play, Pause, Stop, Sound, Silence, Note };

/// Draws the shape into the rectangle (as large as its shorter side allows).
void DrawMediaShape(QPainter& painter, MediaShape shape, const QRectF& place, const QColor& colour);

/// Sharp at every size; in the palette's text colours, also when disabled.
QIcon MediaIcon(MediaShape shape, const QPalette& palette);
