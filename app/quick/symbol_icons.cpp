#include "app/quick/symbol_icons.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pintle {

namespace {

constexpr auto icons = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"arrow.clockwise", "auto-apply"},
    {"arrow.counterclockwise.circle", "reset"},
    {"arrow.down.circle.fill", "update"},
    {"arrow.down.left.and.arrow.up.right", "scale"},
    {"arrow.down.to.line", "download"},
    {"arrow.right.circle", "login"},
    {"arrow.up.left.and.arrow.down.right", "size"},
    {"arrow.uturn.backward.circle", "restore"},
    {"checkmark.circle", "relaunch"},
    {"checkmark.circle.fill", "check-disc"},
    {"circle", "circle"},
    {"cursorarrow", "pointer"},
    {"cursorarrow.motionlines", "pointer-motion"},
    {"cursorarrow.rays", "pointer-rays"},
    {"dot.radiowaves.left.and.right", "broadcast"},
    {"envelope", "mail"},
    {"exclamationmark.triangle", "warning"},
    {"gearshape", "settings"},
    {"hand.point.left.fill", "hand-left"},
    {"hand.point.right.fill", "hand-right"},
    {"hand.raised.fill", "hand-both"},
    {"info.circle", "about"},
    {"menubar.rectangle", "menubar"},
    {"minus.circle.fill", "remove-disc"},
    {"nosign", "exclude"},
    {"person.2.fill", "people"},
    {"plus.circle.fill", "add-disc"},
    {"power", "power"},
    {"rectangle.on.rectangle", "windows"},
    {"sparkles", "features"},
    {"square.stack.3d.forward.dottedline", "layers"},
    {"square.on.square", "glass"},
    {"timelapse", "animated"},
    {"trash.fill", "trash"},
});

}  // namespace

std::string_view iconOfSymbol(std::string_view symbol) {
    const auto found =
        std::ranges::find(icons, symbol, &std::pair<std::string_view, std::string_view>::first);
    return found == icons.end() ? std::string_view() : found->second;
}

}  // namespace pintle
