#pragma once

#include <QList>
#include <QRect>
#include <QSize>

/// Where a window opens: at the remembered place and size where they make sense,
/// else at its design place and size. A window whose top edge could not be
/// grasped on any screen has no sensible place.
QRect WindowPlace(const QRect& remembered, const QRect& design, QSize minimum,
                  const QList<QRect>& screens);

/// The design place: centred on the screen, the size limited to the screen's.
QRect DesignPlace(QSize size, QSize minimum, const QRect& screen);
