#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>

class QGridLayout;
class QTimer;

/// Pixels from a panel's edge to its controls, and between the controls.
inline constexpr int PanelMargin = 8;
inline constexpr int PanelGap = 6;

/// Gives the control its name, and its name for assistive tools.
template <typename Control>
Control* Named(Control* control, const char* name, const QString& accessibleName = {},
               const QString& toolTip = {}) {
    control->setObjectName(QString::fromLatin1(name));
    if (!accessibleName.isEmpty())
        control->setAccessibleName(accessibleName);
    control->setToolTip(toolTip);
    return control;
}

QLabel* MakeLabel(QWidget* panel, const char* name, const QString& caption);
QPushButton* MakeButton(QWidget* panel, const char* name, const QString& caption,
                        const QString& toolTip);
/// A small button with three dots; the tool tip is its name for assistive tools too.
QPushButton* MakeBrowseButton(QWidget* panel, const char* name, const QString& toolTip);
QTimer* MakeTimer(QObject* owner, const char* name, int interval);

/// Wide enough for a time.
void FitTime(QLineEdit* box);
/// The width that a caption needs; the styles' own least width is larger than short
/// captions need.
int CaptionWidth(const QPushButton* button);

/// The panel's grid, which paints its own ground.
QGridLayout* MakePanelGrid(QWidget* panel, int leftMargin, int rightMargin);
