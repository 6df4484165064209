#include "platform/qt/shell/shell_geometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace pintle::shell {

QPoint lowerLeftCorner() {
    const auto* const primary = QGuiApplication::primaryScreen();
    if (!primary) return {};
    const QRect frame = primary->geometry();
    return {frame.x(), frame.y() + frame.height()};
}

Rect pointsFrom(const QRect& rect) {
    const QPoint corner = lowerLeftCorner();
    return {{static_cast<double>(rect.x() - corner.x()),
             static_cast<double>(corner.y() - rect.y() - rect.height())},
            {static_cast<double>(rect.width()), static_cast<double>(rect.height())}};
}

Point pointsFrom(const QPoint& position) {
    const QPoint corner = lowerLeftCorner();
    return {static_cast<double>(position.x() - corner.x()), static_cast<double>(corner.y() - position.y())};
}

QRect pixelsFrom(const Rect& rect) {
    const QPoint corner = lowerLeftCorner();
    const QSize size(qRound(rect.size.width), qRound(rect.size.height));
    return {QPoint(qRound(rect.origin.x + corner.x()), qRound(corner.y() - rect.origin.y - rect.size.height)),
            size};
}

QMargins scaledDown(const QMargins& pixels, qreal ratio) {
    const auto scaled = [ratio](int value) { return static_cast<int>(std::ceil(value / ratio)); };
    return {scaled(pixels.left()), scaled(pixels.top()), scaled(pixels.right()), scaled(pixels.bottom())};
}

QRect workArea(const QScreen& screen, const ShellDesktop& desktop) {
    // With more than one screen the toolkit takes panels for work area.
    if (desktop.panelInsets)
        if (const auto insets = desktop.panelInsets(screen.name())) {
            const QRect area =
                screen.geometry().marginsRemoved(scaledDown(*insets, screen.devicePixelRatio()));
            if (area.isValid()) return area;
        }
    return screen.availableGeometry();
}

}  // namespace pintle::shell
