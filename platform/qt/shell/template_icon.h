// The tray icon: drawings that are black on nothing, drawn in one colour that the panel can show. The drawing
// with lines on the pixel grid is taken for the sizes that panels use. Main thread only.
#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>

namespace pintle::shell {

/// One square picture in device pixels, transparent around the drawing. Without a colour the drawing keeps
/// its own.
QImage templatePicture(int side, const QColor& color);

/// Draws itself sharply at every size that is asked for. `themeName` is the name that a host may look up to
/// colour the icon itself; empty: none.
QIcon templateIcon(const QColor& color, const QString& themeName);

}  // namespace pintle::shell
