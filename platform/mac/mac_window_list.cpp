#include "platform/mac/mac_window_list.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/mac/cf.h"

namespace pintle {
namespace {

std::int64_t integerOf(CFTypeRef value) {
    std::int64_t number = 0;
    if (!value || CFGetTypeID(value) != CFNumberGetTypeID()) return 0;
    CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberSInt64Type, &number);
    return number;
}

/// The desktop counts a window's bounds from the top of the main display, whose height is `height`.
std::optional<Rect> boundsOf(CFTypeRef value, double height) {
    CGRect rect = CGRectMake(0, 0, 0, 0);
    if (!value || CFGetTypeID(value) != CFDictionaryGetTypeID()) return std::nullopt;
    if (!CGRectMakeWithDictionaryRepresentation(static_cast<CFDictionaryRef>(value), &rect))
        return std::nullopt;
    return Rect{{rect.origin.x, height - rect.origin.y - rect.size.height},
                {rect.size.width, rect.size.height}};
}

class MacWindowList : public WindowList {
  public:
    std::vector<WindowInfo> onScreenWindows() override {
        const auto list = CfRef<CFArrayRef>::adopt(CGWindowListCopyWindowInfo(
            kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements, kCGNullWindowID));
        std::vector<WindowInfo> windows;
        if (!list) return windows;
        const double height = CGDisplayBounds(CGMainDisplayID()).size.height;
        for (CFIndex i = 0; i < CFArrayGetCount(list.get()); ++i) {
            const auto* const entry = static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(list.get(), i));
            const auto bounds = boundsOf(CFDictionaryGetValue(entry, kCGWindowBounds), height);
            if (!bounds) continue;
            windows.push_back({fromCfString(CFDictionaryGetValue(entry, kCGWindowOwnerName)),
                               static_cast<int>(integerOf(CFDictionaryGetValue(entry, kCGWindowLayer))),
                               *bounds});
        }
        return windows;
    }
};

}  // namespace

std::unique_ptr<WindowList> makeMacWindowList() { return std::make_unique<MacWindowList>(); }

}  // namespace pintle
