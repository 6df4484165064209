#include "app/window_placement.h"

#include <algorithm>
#include <cmath>

namespace pintle {
namespace {

Rect centred(Size size, const Rect& area) {
    return {{area.origin.x + (area.size.width - size.width) * 0.5,
             area.origin.y + (area.size.height - size.height) * 0.5},
            size};
}

double midX(const Rect& rect) { return rect.origin.x + rect.size.width * 0.5; }
double midY(const Rect& rect) { return rect.origin.y + rect.size.height * 0.5; }

/// How far `value` is outside of a stretch of `length` from `start`.
double outside(double value, double start, double length) {
    return std::max({start - value, 0.0, value - (start + length)});
}

/// The screen that the point is on, or the nearest one. Null without a screen.
const ScreenArea* screenOf(Point point, const std::vector<ScreenArea>& screens) {
    const auto distance = [&](const ScreenArea& screen) {
        return std::hypot(outside(point.x, screen.frame.origin.x, screen.frame.size.width),
                          outside(point.y, screen.frame.origin.y, screen.frame.size.height));
    };
    const auto nearest = std::min_element(screens.begin(), screens.end(), [&](const auto& a, const auto& b) {
        return distance(a) < distance(b);
    });
    return nearest == screens.end() ? nullptr : &*nearest;
}

Rect below(Size size, const Rect& button) {
    return {{midX(button) - size.width * 0.5, button.origin.y - size.height - kStatusItemGap}, size};
}

Rect above(Size size, const Rect& button) {
    return {{midX(button) - size.width * 0.5, button.origin.y + button.size.height + kStatusItemGap}, size};
}

/// A stretch along one axis.
struct Span {
    double start = 0;
    double length = 0;
    double end() const { return start + length; }
};

/// Moved, and shortened where it has to be, so that it ends inside `area`, a part of `screen`.
Span inside(Span span, Span area, Span screen) {
    const double before = area.start <= screen.start ? kScreenEdgeGap : 0;
    const double after = area.end() >= screen.end() ? kScreenEdgeGap : 0;
    if (span.length + before + after <= area.length)
        area = {area.start + before, area.length - before - after};
    span.length = std::min(span.length, area.length);
    span.start = std::clamp(span.start, area.start, area.end() - span.length);
    return span;
}

Rect inside(const Rect& frame, const ScreenArea& screen) {
    const auto& area = screen.workArea;
    const auto across = inside({frame.origin.x, frame.size.width}, {area.origin.x, area.size.width},
                               {screen.frame.origin.x, screen.frame.size.width});
    const auto up = inside({frame.origin.y, frame.size.height}, {area.origin.y, area.size.height},
                           {screen.frame.origin.y, screen.frame.size.height});
    return {{across.start, up.start}, {across.length, up.length}};
}

/// The rectangle used as the item's frame; absent when the item's place is unknown.
std::optional<Rect> anchor(const Placement& placement) {
    if (placement.button) return placement.button;
    if (placement.policy == PlacementPolicy::asComputed) return Rect{};
    if (placement.hasBar && placement.lastClick) return Rect{*placement.lastClick, {}};
    return std::nullopt;
}

}  // namespace

Rect placeUnderStatusItem(Size size, const Placement& placement) {
    const bool keepsInside = placement.policy == PlacementPolicy::insideWorkArea;
    const auto button = placement.hasButton ? anchor(placement) : std::nullopt;
    if (!button) {
        if (placement.screens.empty()) return {{}, size};
        const auto& main = placement.screens.front();
        if (!keepsInside) return centred(size, main.frame);
        return inside(centred(size, main.workArea), main);
    }
    const auto* screen = screenOf({midX(*button), midY(*button)}, placement.screens);
    const bool hangs = !placement.button && !keepsInside;
    const bool upperHalf = hangs || !screen || midY(*button) >= midY(screen->frame);
    const auto frame = upperHalf ? below(size, *button) : above(size, *button);
    return keepsInside && screen ? inside(frame, *screen) : frame;
}

}  // namespace pintle
