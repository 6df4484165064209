#include "app/quick/theme_drawings.h"

#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QStringList>
#include <algorithm>
#include <array>
#include <optional>

namespace pintle {
namespace {

/// Side of the square that the lengths below are drawn in.
constexpr double side = 24;
constexpr QSize usualSize(24, 24);
constexpr qsizetype mostColours = 8;

/// What is drawn around the pointer's outline makes it as large as the square, whatever the corners.
struct Form {
    double margin;
    double inner;
    double edge;
    Qt::PenJoinStyle join;
};

Form formOf(ThemeDrawing::Shape shape) {
    switch (shape) {
        case ThemeDrawing::Shape::plain:
            break;
        case ThemeDrawing::Shape::rounded:
            return {5.2, 5, 8, Qt::RoundJoin};
        case ThemeDrawing::Shape::angular:
            return {4.6, 0.01, 3, Qt::MiterJoin};
    }
    return {3.4, 1.4, 4.2, Qt::RoundJoin};
}

/// The program's pointer with its tip at the margin.
QPainterPath pointer(double margin) {
    constexpr std::array<QPointF, 4> corners = {QPointF(0, 0), QPointF(1, 0.427), QPointF(0.578, 0.578),
                                                QPointF(0.427, 1)};
    const double length = side - 2 * margin;
    QPainterPath path;
    path.moveTo(QPointF(margin, margin) + corners[0] * length);
    for (std::size_t corner = 1; corner < corners.size(); ++corner)
        path.lineTo(QPointF(margin, margin) + corners[corner] * length);
    path.closeSubpath();
    return path;
}

QPainterPath widened(const QPainterPath& path, double width, Qt::PenJoinStyle join) {
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setJoinStyle(join);
    stroker.setMiterLimit(4);
    return path.united(stroker.createStroke(path));
}

QColor colourOf(std::uint32_t colour) { return QColor::fromRgb(static_cast<QRgb>(colour) | 0xFF000000U); }

/// From the tip to the far end.
QBrush brushOf(const ThemeDrawing& drawing) {
    QLinearGradient gradient(QPointF(3, 3), QPointF(side - 5, side - 5));
    const auto count = static_cast<double>(drawing.colours.size());
    switch (drawing.fill) {
        case ThemeDrawing::Fill::none:
            return Qt::NoBrush;
        case ThemeDrawing::Fill::plain:
            return colourOf(drawing.colours.front());
        case ThemeDrawing::Fill::blend:
            for (std::size_t i = 0; i < drawing.colours.size(); ++i)
                gradient.setColorAt(static_cast<double>(i) / std::max(1.0, count - 1),
                                    colourOf(drawing.colours[i]));
            return gradient;
        case ThemeDrawing::Fill::stripes:
            break;
    }
    constexpr int bands = 6;
    constexpr double seam = 0.001;
    for (int band = 0; band < bands; ++band) {
        const auto colour =
            colourOf(drawing.colours[static_cast<std::size_t>(band) % drawing.colours.size()]);
        gradient.setColorAt(static_cast<double>(band) / bands + (band > 0 ? seam : 0), colour);
        gradient.setColorAt(static_cast<double>(band + 1) / bands, colour);
    }
    return gradient;
}

std::optional<ThemeDrawing> drawingAt(const QString& address) {
    const auto parts = address.split('-');
    if (parts.size() != 5) return std::nullopt;
    const auto number = [](const QString& text) {
        bool ok = false;
        const auto value = text.toUInt(&ok, 16);
        return ok ? std::optional(value) : std::nullopt;
    };
    const auto shape = number(parts[0]);
    const auto fill = number(parts[1]);
    const auto outline = number(parts[3]);
    if (!shape || *shape > 2 || !fill || *fill > 3 || !outline) return std::nullopt;
    ThemeDrawing drawing;
    drawing.kind = ThemeDrawing::Kind::pointer;
    drawing.shape = static_cast<ThemeDrawing::Shape>(*shape);
    drawing.fill = static_cast<ThemeDrawing::Fill>(*fill);
    drawing.mirrored = parts[2] == QLatin1String("m");
    drawing.outline = *outline;
    const auto colours = parts[4].split('.', Qt::SkipEmptyParts);
    if (colours.size() > mostColours) return std::nullopt;
    for (const auto& each : colours) {
        const auto colour = number(each);
        if (!colour) return std::nullopt;
        drawing.colours.push_back(*colour);
    }
    if (drawing.colours.empty() && drawing.fill != ThemeDrawing::Fill::none) return std::nullopt;
    return drawing;
}

class Provider : public QQuickImageProvider {
  public:
    Provider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& address, QSize* size, const QSize& asked) override {
        const auto drawing = drawingAt(address);
        if (!drawing) return {};
        auto image = ThemeDrawings::paint(*drawing, asked.isEmpty() ? usualSize : asked);
        if (size) *size = image.size();
        return image;
    }
};

}  // namespace

QString ThemeDrawings::address(const ThemeDrawing& drawing) {
    if (drawing.kind != ThemeDrawing::Kind::pointer) return {};
    QStringList colours;
    for (const auto colour : drawing.colours) colours.append(QString::number(colour, 16));
    return QString("image://%1/%2-%3-%4-%5-%6")
        .arg(QLatin1String(providerName))
        .arg(static_cast<int>(drawing.shape))
        .arg(static_cast<int>(drawing.fill))
        .arg(QLatin1String(drawing.mirrored ? "m" : "s"))
        .arg(drawing.outline, 0, 16)
        .arg(colours.join('.'));
}

QImage ThemeDrawings::paint(const ThemeDrawing& drawing, const QSize& size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const auto form = formOf(drawing.shape);
    const auto path = pointer(form.margin);
    const auto outer = widened(path, form.edge, form.join);
    const auto inner = widened(path, form.inner, form.join);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size.width() / side, size.height() / side);
    if (drawing.fill == ThemeDrawing::Fill::none) {
        painter.fillPath(outer.subtracted(inner), colourOf(drawing.outline));
    } else {
        painter.fillPath(outer, colourOf(drawing.outline));
        painter.fillPath(inner, brushOf(drawing));
    }
    painter.end();
    return drawing.mirrored ? image.mirrored(true, false) : image;
}

std::unique_ptr<QQuickImageProvider> ThemeDrawings::makeProvider() { return std::make_unique<Provider>(); }

}  // namespace pintle
