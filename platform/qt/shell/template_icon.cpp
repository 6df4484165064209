#include "platform/qt/shell/template_icon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <algorithm>
#include <array>
#include <cmath>

namespace pintle::shell {
namespace {

/// The sizes for which there is a drawing.
constexpr std::array kDrawings = {24, 22, 20, 16};
/// Beyond it a line between two pixels is not seen any more.
constexpr int kLargestSnapped = 24;

struct Choice {
    int drawing;
    /// How large it is drawn: in small sizes a whole drawing with an empty edge is better than a larger one
    /// with soft lines.
    int side;
};

Choice choose(int side) {
    for (const int drawing : kDrawings)
        if (side % drawing == 0) return {drawing, side};
    if (side > kLargestSnapped) return {kDrawings.front(), side};
    for (const int drawing : kDrawings)
        if (drawing <= side) return {drawing, drawing};
    return {kDrawings.back(), side};
}

class TemplateEngine : public QIconEngine {
  public:
    TemplateEngine(QColor color, QString themeName) : color_(color), themeName_(std::move(themeName)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        const qreal ratio = painter->device()->devicePixelRatio();
        QImage picture = templatePicture(qRound(std::min(rect.width(), rect.height()) * ratio), color_);
        picture.setDevicePixelRatio(ratio);
        const QSizeF size = picture.deviceIndependentSize();
        // On a whole device pixel.
        const auto middle = [ratio](double free) { return std::floor(free / 2 * ratio) / ratio; };
        painter->drawImage(QPointF(rect.x() + middle(rect.width() - size.width()),
                                   rect.y() + middle(rect.height() - size.height())),
                           picture);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
        return QPixmap::fromImage(templatePicture(std::min(size.width(), size.height()), color_));
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal) override {
        return pixmap(size, mode, state);
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        QList<QSize> sizes;
        for (const int side : {16, 20, 22, 24, 32, 44, 48, 64}) sizes.append({side, side});
        return sizes;
    }
    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override {
        const int side = std::min(size.width(), size.height());
        return {side, side};
    }
    QString iconName() override { return themeName_; }
    bool isNull() override { return false; }
    QString key() const override { return QStringLiteral("pintle-template"); }
    QIconEngine* clone() const override { return new TemplateEngine(*this); }

  private:
    QColor color_;
    QString themeName_;
};

}  // namespace

QImage templatePicture(int side, const QColor& color) {
    side = std::max(side, 1);
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    const auto [drawing, drawn] = choose(side);
    QPainter painter(&picture);
    const int edge = (side - drawn) / 2;
    QSvgRenderer(QStringLiteral(":/pintle/tray/tray-%1.svg").arg(drawing))
        .render(&painter, QRectF(edge, edge, drawn, drawn));
    if (color.isValid()) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(picture.rect(), color);
    }
    return picture;
}

QIcon templateIcon(const QColor& color, const QString& themeName) {
    return QIcon(new TemplateEngine(color, themeName));
}

}  // namespace pintle::shell
