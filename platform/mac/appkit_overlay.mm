#include "platform/mac/appkit_overlay.h"

#import <AppKit/AppKit.h>

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

static_assert(kCanJoinAllSpaces == NSWindowCollectionBehaviorCanJoinAllSpaces);
static_assert(kStationary == NSWindowCollectionBehaviorStationary);
static_assert(kIgnoresCycle == NSWindowCollectionBehaviorIgnoresCycle);
static_assert(kFullScreenAuxiliary == NSWindowCollectionBehaviorFullScreenAuxiliary);

namespace {

class AppKitOverlayWindow : public NativeOverlayWindow {
  public:
    AppKitOverlayWindow(const NativeOverlaySpec& spec, NSRect frame)
        : view_([[CursorImageView alloc] initWithFrame:frame]),
          window_([[CursorOverlayWindow alloc] initWithContentRect:frame
                                                         styleMask:NSWindowStyleMaskBorderless
                                                           backing:NSBackingStoreBuffered
                                                             defer:NO]) {
        window_.releasedWhenClosed = NO;
        window_.opaque = NO;
        window_.backgroundColor = NSColor.clearColor;
        window_.hasShadow = NO;
        window_.level = spec.level;
        window_.ignoresMouseEvents = YES;
        window_.collectionBehavior = spec.collectionBehavior;
        window_.canHide = spec.canHide;
        window_.contentView = view_;
        window_.alphaValue = 0;
    }
    ~AppKitOverlayWindow() override { [window_ close]; }
    AppKitOverlayWindow(const AppKitOverlayWindow&) = delete;
    AppKitOverlayWindow& operator=(const AppKitOverlayWindow&) = delete;

    bool isVisible() const override { return window_.visible; }
    void setSize(Size size) override {
        const NSPoint origin = window_.frame.origin;
        [window_ setFrame:NSMakeRect(origin.x, origin.y, size.width, size.height) display:YES];
    }
    void setOrigin(Point origin) override { [window_ setFrameOrigin:NSMakePoint(origin.x, origin.y)]; }
    void setAlpha(double alpha) override { window_.alphaValue = alpha; }
    void setImage(CGImageRef image, Size size) override {
        view_.cursorImage =
            image ? [[NSImage alloc] initWithCGImage:image size:NSMakeSize(size.width, size.height)] : nil;
        view_.needsDisplay = YES;
    }
    void orderFrontRegardless() override { [window_ orderFrontRegardless]; }

  private:
    CursorImageView* view_;
    CursorOverlayWindow* window_;
};

}  // namespace

std::unique_ptr<NativeOverlayWindow> makeNativeOverlayWindow(const NativeOverlaySpec& spec) {
    return std::make_unique<AppKitOverlayWindow>(spec, NSMakeRect(0, 0, spec.size.width, spec.size.height));
}

}  // namespace pintle
