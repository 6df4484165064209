#include "platform/mac/appkit_screens.h"

#import <AppKit/AppKit.h>

#include "platform/mac/ns_geometry.h"

namespace pintle {
namespace {

std::optional<std::uint32_t> numberOf(NSScreen* screen) {
    const id number = screen.deviceDescription[@"NSScreenNumber"];
    if (![number isKindOfClass:[NSNumber class]]) return std::nullopt;
    return [number unsignedIntValue];
}

}  // namespace

std::vector<ScreenReading> readScreens() {
    std::vector<ScreenReading> screens;
    for (NSScreen* screen in NSScreen.screens)
        screens.push_back({fromNsRect(screen.frame), fromNsRect(screen.visibleFrame), numberOf(screen)});
    return screens;
}

Point readMouseLocation() {
    const NSPoint location = NSEvent.mouseLocation;
    return {location.x, location.y};
}

}  // namespace pintle
