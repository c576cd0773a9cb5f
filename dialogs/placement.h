#pragma once

#include <QRect>
#include <QSize>

class QWidget;

/// Moves a window that is about to be shown, as little as needed, so that all of
/// it is on its screen.
void KeepOnScreen(QWidget& window);

/// Does so only when no screen shows enough of its title bar to take hold of it.
void KeepReachable(QWidget& window);

/// Where a window of that size, its frame included, opens for a film at that place: right of
/// it, below, left or above, wherever it keeps the most of its size; never smaller than
/// the least. Where none of that is possible, in the lower half of the screen.
QRect BesideFilm(QSize size, QSize least, const QRect& film, const QRect& screen);

/// 1000 twips right of and below the other window's corner.
void PlaceBeside(QWidget& window, const QWidget& other);
