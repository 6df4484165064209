// The line around a panel whose corners are cut in steps, as a picture to be stretched by its middle. The
// line follows the steps; a smooth one would leave some of the panel's colour outside it. Any thread.
#pragma once

#include <QColor>
#include <QImage>
#include <QQuickImageProvider>

#include <memory>

namespace pintle {

struct PanelEdge {
    /// Premultiplied, for `scale` pixels per unit; one unit wide, transparent inside and outside.
    static QImage draw(const QColor& colour, double scale, int panelRadius);
    /// Answers colours as eight digits (alpha, red, green, blue) under the name "edge".
    static std::unique_ptr<QQuickImageProvider> makeProvider(double scale, int panelRadius);
};

}  // namespace pintle
