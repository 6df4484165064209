#include "platform/x11/cursors/keeper_rules.h"

#include "platform/x11/cursors/cursor_names.h"

namespace pintle::x11 {

KeeperFinding judge(const ShownCursor& shown,
                    const std::function<PicturePtr(std::string_view name)>& themePicture,
                    const std::function<std::string_view(const ShownCursor&)>& desktopName) {
    if (shown.isBlank || isNeverTouched(shown.name)) return {};
    std::string_view name;
    if (!shown.name.empty()) {
        const auto* const row = rowOf(shown.name);
        if (!row) return {};
        for (const auto each : row->names)
            if (each == shown.name) name = each;
    } else if (shown.fingerprint) {
        name = desktopName(shown);
    }
    if (name.empty()) return {};
    const auto picture = themePicture(name);
    if (!picture) return {KeeperVerdict::leave, name};
    if (shown.fingerprint && picture->shows(*shown.fingerprint)) return {KeeperVerdict::leave, name};
    return {KeeperVerdict::replace, name};
}

bool FixLimit::allow(int pointerX, int pointerY, std::chrono::nanoseconds now) {
    const bool rests = pointerX == x_ && pointerY == y_ && now - last_ < kQuiet;
    if (!rests) inARow_ = 0;
    x_ = pointerX;
    y_ = pointerY;
    last_ = now;
    return ++inARow_ <= kMostInARow;
}

}  // namespace pintle::x11
