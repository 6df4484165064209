#include "platform/mac/mac_overlay_surfaces.h"

#import <AppKit/AppKit.h>

#include "platform/mac/cg_image.h"

@interface CursorOverlayWindow : NSWindow
@end

@implementation CursorOverlayWindow
- (BOOL)canBecomeKeyWindow {
    return NO;
}
- (BOOL)canBecomeMainWindow {
    return NO;
}
- (BOOL)isAccessibilityElement {
    return NO;
}
@end

@interface CursorImageView : NSView
@property(nonatomic, strong) NSImage* cursorImage;
@end

@implementation CursorImageView
- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    [self.cursorImage drawInRect:self.bounds];
}
@end

namespace pintle {
namespace {

/// All spaces, stationary, no cycle, beside full-screen windows.
constexpr NSWindowCollectionBehavior kBehavior = 0x151;
static_assert(kBehavior ==
              (NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary |
               NSWindowCollectionBehaviorIgnoresCycle | NSWindowCollectionBehaviorFullScreenAuxiliary));

class MacOverlaySurface : public OverlaySurface {
  public:
    explicit MacOverlaySurface(NSRect frame)
        : view_([[CursorImageView alloc] initWithFrame:frame]),
          window_([[CursorOverlayWindow alloc] initWithContentRect:frame
                                                         styleMask:NSWindowStyleMaskBorderless
                                                           backing:NSBackingStoreBuffered
                                                             defer:NO]) {
        window_.releasedWhenClosed = NO;
        window_.opaque = NO;
        window_.backgroundColor = NSColor.clearColor;
        window_.hasShadow = NO;
        window_.level = CGWindowLevelForKey(kCGMaximumWindowLevelKey);
        window_.ignoresMouseEvents = YES;
        window_.collectionBehavior = kBehavior;
        window_.contentView = view_;
        window_.alphaValue = 0;
    }
    ~MacOverlaySurface() override { [window_ close]; }
    MacOverlaySurface(const MacOverlaySurface&) = delete;
    MacOverlaySurface& operator=(const MacOverlaySurface&) = delete;

    void setSize(Size size) override {
        const NSPoint origin = window_.frame.origin;
        [window_ setFrame:NSMakeRect(origin.x, origin.y, size.width, size.height) display:YES];
    }
    void setImage(const std::optional<Bitmap>& image) override {
        const auto picture = image ? toCgImage(*image) : CfRef<CGImageRef>();
        view_.cursorImage =
            picture ? [[NSImage alloc] initWithCGImage:picture.get()
                                                  size:NSMakeSize(image->width(), image->height())]
                    : nil;
        view_.needsDisplay = YES;
    }
    void setOrigin(Point origin) override { [window_ setFrameOrigin:NSMakePoint(origin.x, origin.y)]; }
    void setAlpha(double alpha) override { window_.alphaValue = alpha; }
    void orderFront() override { [window_ orderFrontRegardless]; }

  private:
    CursorImageView* view_;
    CursorOverlayWindow* window_;
};

class MacOverlaySurfaces : public OverlaySurfaces {
  public:
    // A window stands on the display that its origin is on.
    std::unique_ptr<OverlaySurface> create(DisplayId, Size size) override {
        return std::make_unique<MacOverlaySurface>(NSMakeRect(0, 0, size.width, size.height));
    }
};

}  // namespace

std::unique_ptr<OverlaySurfaces> makeMacOverlaySurfaces() { return std::make_unique<MacOverlaySurfaces>(); }

}  // namespace pintle
