// Between the shell's coordinates and the toolkit's. One point of the shell is one device-independent pixel
// of the toolkit, at every scale factor: 340 x 520 points are as large as texts and controls of that size.
// The origin is the lower left corner of the primary screen, y grows upward. Main thread only.
#pragma once

#include <QPoint>
#include <QRect>
#include <QScreen>
#include <optional>

#include "base/geometry.h"
#include "platform/qt/shell/shell_desktop.h"

namespace pintle::shell {

/// Of the primary screen; (0, 0) without screens.
QPoint lowerLeftCorner();

Rect pointsFrom(const QRect& rect);
Point pointsFrom(const QPoint& position);
/// To the nearest whole pixels.
QRect pixelsFrom(const Rect& rect);

/// Of the screen without its panels, in device-independent pixels.
QRect workArea(const QScreen& screen, const ShellDesktop& desktop);
/// Rounded up.
QMargins scaledDown(const QMargins& pixels, qreal ratio);

}  // namespace pintle::shell
