#include "apply/cursor_replacement.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace pintle {
namespace {

/// The role of each standard cursor, in the order of kStandardCursors.
constexpr std::array<std::string_view, kStandardCursors.size()> kRoles = {
    "arrow",      "iBeam",           "pointingHand",        "crosshair",      "openHand",
    "closedHand", "resizeLeftRight", "resizeUpDown",        "resizeLeft",     "resizeRight",
    "resizeUp",   "resizeDown",      "operationNotAllowed", "contextualMenu", "dragCopy",
    "dragLink",   "disappearingItem"};

}  // namespace

CursorReplacement::CursorReplacement(HardwareCursor& hardware, Log& log) : hardware_(hardware), log_(log) {}

void CursorReplacement::enable() {
    if (isSwizzled_) return;
    // The exchange outlives this object; without it every cursor passes through unchanged.
    auto replacement = [&hardware = hardware_,
                        weak = std::weak_ptr<State>(state_)](const DesktopCursor& cursor) {
        static const RoleCursors none;
        const auto state = weak.lock();
        swizzledSet(hardware, state ? state->customCursors : none, cursor);
    };
    if (!hardware_.exchangeSet(std::move(replacement))) return;
    isSwizzled_ = true;
    log_.system("[NSCursor] Swizzling enabled");
}

void CursorReplacement::swizzledSet(HardwareCursor& hardware, const RoleCursors& customCursors,
                                    const DesktopCursor& cursor) {
    for (std::size_t i = 0; i < kStandardCursors.size(); ++i) {
        if (!(cursor == hardware.standardCursor(kStandardCursors[i]))) continue;
        const auto themed = customCursors.find(std::string(kRoles[i]));
        if (themed == customCursors.end()) continue;
        hardware.setOriginal(themed->second);
        return;
    }
    hardware.setOriginal(cursor);
}

}  // namespace pintle
