#pragma once

#include <QIcon>
#include <QPalette>

/// The pictures of `cmdBlue`, `cmdGreen` and `cmdAdjust`.
enum class ToolIcon { BlueFlag, GreenFlag, Stretch };

QIcon MakeToolIcon(ToolIcon icon, const QPalette& palette);
inline constexpr int ToolIconSide = 20;
