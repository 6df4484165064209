#include "app/quick/panel_edge.h"

#include <algorithm>
#include <cmath>

#include "base/round_corner.h"

namespace pintle {
namespace {

/// The picture's corners, which are not stretched, are the radius and this much of the straight line.
constexpr int beyondRadius = 4;

class Provider : public QQuickImageProvider {
  public:
    Provider(double scale, int panelRadius)
        : QQuickImageProvider(QQuickImageProvider::Image), scale_(scale), panelRadius_(panelRadius) {}
    QImage requestImage(const QString& name, QSize* size, const QSize&) override {
        auto image = PanelEdge::draw(QColor(QLatin1Char('#') + name), scale_, panelRadius_);
        if (size) *size = image.size();
        return image;
    }

  private:
    double scale_;
    int panelRadius_;
};

}  // namespace

QImage PanelEdge::draw(const QColor& colour, double scale, int panelRadius) {
    const int side = static_cast<int>(std::lround(2 * (panelRadius + beyondRadius) * scale));
    const auto insets = cornerInsets(static_cast<int>(std::lround(panelRadius * scale)));
    const int width = std::max(1, static_cast<int>(std::lround(scale)));
    const auto isInside = [&](int x, int y) {
        if (x < 0 || y < 0 || x >= side || y >= side) return false;
        const auto row = static_cast<std::size_t>(std::min(y, side - 1 - y));
        return row >= insets.size() || std::min(x, side - 1 - x) >= insets[row];
    };
    const auto isOnEdge = [&](int x, int y) {
        for (int down = -width; down <= width; ++down)
            for (int across = -width; across <= width; ++across)
                if (!isInside(x + across, y + down)) return true;
        return false;
    };
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    const auto ink = qPremultiply(colour.rgba());
    for (int y = 0; y < side; ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x)
            if (isInside(x, y) && isOnEdge(x, y)) row[x] = ink;
    }
    image.setDevicePixelRatio(scale);
    return image;
}

std::unique_ptr<QQuickImageProvider> PanelEdge::makeProvider(double scale, int panelRadius) {
    return std::make_unique<Provider>(scale, panelRadius);
}

}  // namespace pintle
