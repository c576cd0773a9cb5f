#pragma once

class QWidget;

/// Moves a window that is about to be shown, as little as needed, so that all of
/// it is on its screen.
void KeepOnScreen(QWidget& window);

/// Does so only when no screen shows enough of its title bar to take hold of it.
void KeepReachable(QWidget& window);

/// 1000 twips right of and below the other window's corner.
void PlaceBeside(QWidget& window, const QWidget& other);
