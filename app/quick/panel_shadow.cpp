#include "app/quick/panel_shadow.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace pintle {
namespace {

constexpr double blur = 18;
constexpr double offset = 4;
constexpr QRgb ink = 0x061010;
constexpr double lightOpacity = 0.36;
constexpr double darkOpacity = 0.58;

/// Blurs along lines of `length` values that lie `step` apart.
void blurLine(std::vector<float>& values, std::size_t begin, std::size_t step, int length,
              const std::vector<float>& weights) {
    const int reach = static_cast<int>(weights.size()) / 2;
    std::vector<float> line(static_cast<std::size_t>(length));
    for (int i = 0; i < length; ++i) {
        float sum = 0;
        for (int k = -reach; k <= reach; ++k) {
            const int from = i + k;
            if (from < 0 || from >= length) continue;
            const int weight = k + reach;
            sum += weights[static_cast<std::size_t>(weight)] *
                   values[begin + step * static_cast<std::size_t>(from)];
        }
        line[static_cast<std::size_t>(i)] = sum;
    }
    for (int i = 0; i < length; ++i)
        values[begin + step * static_cast<std::size_t>(i)] = line[static_cast<std::size_t>(i)];
}

std::vector<float> bell(double sigma) {
    const int reach = static_cast<int>(std::ceil(sigma * 3));
    std::vector<float> weights;
    float sum = 0;
    for (int k = -reach; k <= reach; ++k) {
        weights.push_back(static_cast<float>(std::exp(-0.5 * k * k / (sigma * sigma))));
        sum += weights.back();
    }
    for (auto& weight : weights) weight /= sum;
    return weights;
}

class Provider : public QQuickImageProvider {
  public:
    Provider(double scale, int panelRadius)
        : QQuickImageProvider(QQuickImageProvider::Image), scale_(scale), panelRadius_(panelRadius) {}
    QImage requestImage(const QString& name, QSize* size, const QSize&) override {
        auto image = PanelShadow::draw(name == QLatin1String("dark"), scale_, panelRadius_);
        if (size) *size = image.size();
        return image;
    }

  private:
    double scale_;
    int panelRadius_;
};

}  // namespace

QImage PanelShadow::draw(bool dark, double scale, int panelRadius) {
    const int side = static_cast<int>(std::lround((2 * corner + 8) * scale));
    const auto pixels = static_cast<std::size_t>(side);
    QImage shape(side, side, QImage::Format_Alpha8);
    shape.fill(0);
    const QRectF panel =
        QRectF(0, 0, side, side).adjusted(margin * scale, margin * scale, -margin * scale, -margin * scale);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::black);
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(panel.translated(0, offset * scale), panelRadius * scale,
                                panelRadius * scale);
    }
    std::vector<float> values(pixels * pixels);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            values[static_cast<std::size_t>(y) * pixels + static_cast<std::size_t>(x)] =
                static_cast<float>(shape.constScanLine(y)[x]) / 255.0F;
    const auto weights = bell(blur / 2.6 * scale);
    for (std::size_t line = 0; line < pixels; ++line) blurLine(values, line * pixels, 1, side, weights);
    for (std::size_t line = 0; line < pixels; ++line) blurLine(values, line, pixels, side, weights);

    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    const double opacity = dark ? darkOpacity : lightOpacity;
    for (int y = 0; y < side; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const double strength =
                values[static_cast<std::size_t>(y) * pixels + static_cast<std::size_t>(x)];
            row[x] = qPremultiply((ink & 0xFFFFFFU) | static_cast<QRgb>(std::lround(255 * opacity * strength))
                                                          << 24U);
        }
    }
    // Cut out, so that nothing darkens what is seen through the panel.
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setBrush(Qt::black);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(panel, panelRadius * scale, panelRadius * scale);
    painter.end();
    image.setDevicePixelRatio(scale);
    return image;
}

std::unique_ptr<QQuickImageProvider> PanelShadow::makeProvider(double scale, int panelRadius) {
    return std::make_unique<Provider>(scale, panelRadius);
}

}  // namespace pintle
