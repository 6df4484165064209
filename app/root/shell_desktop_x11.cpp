#include "app/root/shell_desktop_x11.h"

#include <utility>
#include <vector>

namespace pintle {

namespace {

std::vector<xcb_rectangle_t> rectangles(const QRegion& region) {
    std::vector<xcb_rectangle_t> parts;
    for (const QRect& part : region)
        parts.push_back({static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(part.y()),
                         static_cast<std::uint16_t>(part.width()),
                         static_cast<std::uint16_t>(part.height())});
    return parts;
}

}  // namespace

ShellDesktop makeShellDesktop(X11Shell& x) {
    ShellDesktop desktop;
    if (auto* const presses = x.presses()) {
        desktop.watchPresses = [presses](auto handler) { return presses->observe(std::move(handler)); };
        desktop.currentPress = [&x] { return x.currentPress(); };
    }
    desktop.trayHosts = [&x] { return TrayHosts{x.hasNotifierHost(), x.hasEmbeddingTray()}; };
    desktop.observeTrayHosts = [&x](auto changed) { return x.observeTrays(std::move(changed)); };
    desktop.panelLook = [&x](NativeWindow icon) -> std::optional<PanelLook> {
        const auto ground = x.coloursOf(icon);
        if (!ground) return std::nullopt;
        return PanelLook{ground->dark, ground->foreground};
    };
    desktop.activate = toolkit_windows::activate;
    desktop.leaveTaskbar = toolkit_windows::leaveTaskbar;
    desktop.setInputArea = [](NativeWindow window, const QRect& area) {
        toolkit_windows::setInputArea(window, area.x(), area.y(), area.width(), area.height());
    };
    desktop.setShape = [](NativeWindow window, const QRegion& shape) {
        toolkit_windows::setShape(window, rectangles(shape));
    };
    desktop.setBlurBehind = [](NativeWindow window, const QRegion& region) {
        toolkit_windows::setBlurBehind(window, rectangles(region));
    };
    const auto margins = [](const panels::Insets& insets) {
        return QMargins(insets.left, insets.top, insets.right, insets.bottom);
    };
    desktop.frameExtents = [margins](NativeWindow window) {
        return margins(toolkit_windows::frameExtents(window));
    };
    desktop.panelInsets = [&x, margins](const QString& screen) -> std::optional<QMargins> {
        const auto insets = x.insetsOf(screen.toStdString());
        if (!insets) return std::nullopt;
        return margins(*insets);
    };
    return desktop;
}

}  // namespace pintle
