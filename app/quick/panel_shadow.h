// The shadow around a panel as a picture to be stretched by its middle. The software renderer cannot blur, so
// it is drawn once. Any thread.
#pragma once

#include <QImage>
#include <QQuickImageProvider>

#include <memory>

namespace pintle {

struct PanelShadow {
    /// The margin around the panel on each side; the shadow ends inside it.
    static constexpr int margin = 24;
    /// Side of each of the picture's four corners, which are not stretched.
    static constexpr int corner = 40;

    /// Premultiplied, transparent under the panel, for `scale` pixels per unit.
    static QImage draw(bool dark, double scale, int panelRadius);
    /// Answers "light" and "dark" under the name "shadow".
    static std::unique_ptr<QQuickImageProvider> makeProvider(double scale, int panelRadius);
};

}  // namespace pintle
