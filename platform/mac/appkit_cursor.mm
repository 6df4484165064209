#include "platform/mac/appkit_cursor.h"

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

namespace {

std::function<void(const pintle::CursorObject& receiver)>& replacementOfSet() {
    static std::function<void(const pintle::CursorObject& receiver)> replacement;
    return replacement;
}

pintle::CursorObject retained(NSCursor* cursor) {
    return {(__bridge_retained const void*)cursor, [](const void* object) { CFRelease(object); }};
}

NSCursor* cursorOf(const pintle::CursorObject& object) { return (__bridge NSCursor*)object.get(); }

}  // namespace

@interface NSCursor (PintleExchange)
- (void)swizzled_set;
@end

@implementation NSCursor (PintleExchange)
- (void)swizzled_set {
    replacementOfSet()(retained(self));
}
@end

namespace pintle {
namespace {

using SetFunction = void (*)(id receiver, SEL selector);

/// Taken before anything is exchanged.
SetFunction originalSet() {
    static const auto function =
        reinterpret_cast<SetFunction>(class_getMethodImplementation([NSCursor class], @selector(set)));
    return function;
}

CursorReading readingOf(NSCursor* cursor) {
    NSImage* const image = cursor.image;
    NSRect whole = NSMakeRect(0, 0, image.size.width, image.size.height);
    CGImageRef const picture = [image CGImageForProposedRect:&whole context:nil hints:nil];
    return {CfRef<CGImageRef>::retain(picture),
            {image.size.width, image.size.height},
            {cursor.hotSpot.x, cursor.hotSpot.y}};
}

// The one-way resize cursors are deprecated since 15 and have no one-to-one successors; the cursor of the
// whole desktop likewise, and may be nil one day.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

NSCursor* currentSystemCursor() { return NSCursor.currentSystemCursor; }

NSCursor* standard(StandardCursor which) {
    switch (which) {
        case StandardCursor::arrow:
            return NSCursor.arrowCursor;
        case StandardCursor::iBeam:
            return NSCursor.IBeamCursor;
        case StandardCursor::pointingHand:
            return NSCursor.pointingHandCursor;
        case StandardCursor::crosshair:
            return NSCursor.crosshairCursor;
        case StandardCursor::openHand:
            return NSCursor.openHandCursor;
        case StandardCursor::closedHand:
            return NSCursor.closedHandCursor;
        case StandardCursor::resizeLeftRight:
            return NSCursor.resizeLeftRightCursor;
        case StandardCursor::resizeUpDown:
            return NSCursor.resizeUpDownCursor;
        case StandardCursor::resizeLeft:
            return NSCursor.resizeLeftCursor;
        case StandardCursor::resizeRight:
            return NSCursor.resizeRightCursor;
        case StandardCursor::resizeUp:
            return NSCursor.resizeUpCursor;
        case StandardCursor::resizeDown:
            return NSCursor.resizeDownCursor;
        case StandardCursor::operationNotAllowed:
            return NSCursor.operationNotAllowedCursor;
        case StandardCursor::contextualMenu:
            return NSCursor.contextualMenuCursor;
        case StandardCursor::dragCopy:
            return NSCursor.dragCopyCursor;
        case StandardCursor::dragLink:
            return NSCursor.dragLinkCursor;
        case StandardCursor::disappearingItem:
            return NSCursor.disappearingItemCursor;
    }
    return NSCursor.arrowCursor;
}

#pragma clang diagnostic pop

}  // namespace

CursorObject makeCursorObject(CGImageRef image, Size size, Point hotspot) {
    const NSSize points = NSMakeSize(size.width, size.height);
    NSImage* const picture =
        image ? [[NSImage alloc] initWithCGImage:image size:points] : [[NSImage alloc] initWithSize:points];
    return retained([[NSCursor alloc] initWithImage:picture hotSpot:NSMakePoint(hotspot.x, hotspot.y)]);
}

CursorObject standardCursorObject(StandardCursor which) { return retained(standard(which)); }

void sendSet(const CursorObject& cursor) { [cursorOf(cursor) set]; }

void sendOriginalSet(const CursorObject& cursor) { originalSet()(cursorOf(cursor), @selector(set)); }

bool exchangeCursorSet(std::function<void(const CursorObject& receiver)> replacement) {
    Method const own = class_getInstanceMethod([NSCursor class], @selector(set));
    Method const other = class_getInstanceMethod([NSCursor class], @selector(swizzled_set));
    if (!own || !other) return false;
    originalSet();
    replacementOfSet() = std::move(replacement);
    method_exchangeImplementations(own, other);
    return true;
}

std::optional<CursorReading> readCurrentSystemCursor() {
    NSCursor* const cursor = currentSystemCursor();
    return cursor ? std::optional(readingOf(cursor)) : std::nullopt;
}

std::vector<std::pair<std::string, CursorReading>> readStandardCursors() {
    std::vector<std::pair<std::string, CursorReading>> cursors = {
        {"left_ptr", readingOf(standard(StandardCursor::arrow))},
        {"xterm", readingOf(standard(StandardCursor::iBeam))},
        {"pointer", readingOf(standard(StandardCursor::pointingHand))},
        {"crosshair", readingOf(standard(StandardCursor::crosshair))},
        {"grab", readingOf(standard(StandardCursor::openHand))},
        {"grabbing", readingOf(standard(StandardCursor::closedHand))},
        {"size_hor", readingOf(standard(StandardCursor::resizeLeftRight))},
        {"size_ver", readingOf(standard(StandardCursor::resizeUpDown))},
        {"left_side", readingOf(standard(StandardCursor::resizeLeft))},
        {"right_side", readingOf(standard(StandardCursor::resizeRight))},
        {"top_side", readingOf(standard(StandardCursor::resizeUp))},
        {"bottom_side", readingOf(standard(StandardCursor::resizeDown))},
        {"not-allowed", readingOf(standard(StandardCursor::operationNotAllowed))},
        {"alias", readingOf(standard(StandardCursor::dragLink))},
        {"copy", readingOf(standard(StandardCursor::dragCopy))},
        {"context-menu", readingOf(standard(StandardCursor::contextualMenu))},
        {"vertical-text", readingOf(NSCursor.IBeamCursorForVerticalLayout)},
        {"pirate", readingOf(standard(StandardCursor::disappearingItem))},
    };
// Older kits do not know these cursors.
#if !defined(__MAC_OS_X_VERSION_MAX_ALLOWED) || __MAC_OS_X_VERSION_MAX_ALLOWED >= 150000
    if (@available(macOS 15, *)) {
        cursors.emplace_back("zoom-in", readingOf(NSCursor.zoomInCursor));
        cursors.emplace_back("zoom-out", readingOf(NSCursor.zoomOutCursor));
        cursors.emplace_back("col-resize", readingOf(NSCursor.columnResizeCursor));
        cursors.emplace_back("row-resize", readingOf(NSCursor.rowResizeCursor));
        const NSCursorFrameResizeDirections both = NSCursorFrameResizeDirectionsAll;
        cursors.emplace_back(
            "size_fdiag", readingOf([NSCursor frameResizeCursorFromPosition:NSCursorFrameResizePositionTopLeft
                                                               inDirections:both]));
        cursors.emplace_back(
            "size_bdiag",
            readingOf([NSCursor frameResizeCursorFromPosition:NSCursorFrameResizePositionTopRight
                                                 inDirections:both]));
    }
#endif
    return cursors;
}

}  // namespace pintle
