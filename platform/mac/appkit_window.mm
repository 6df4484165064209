#include "platform/mac/appkit_window.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/mac/appkit_layers.h"
#include "platform/mac/ns_geometry.h"
#include "platform/mac/ns_text.h"

@interface PintleWindowWatch : NSObject <NSWindowDelegate>
@property(nonatomic) std::function<void()> willClose;
@end

@implementation PintleWindowWatch
- (void)windowWillClose:(NSNotification*)notification {
    (void)notification;
    if (self.willClose) self.willClose();
}
@end

namespace pintle {
namespace {

NSWindow* makeWindow(const WindowSpec& spec) {
    const NSRect content = NSMakeRect(0, 0, spec.contentSize.width, spec.contentSize.height);
    NSWindow* const window = [[NSWindow alloc] initWithContentRect:content
                                                         styleMask:spec.styleMask
                                                           backing:NSBackingStoreBuffered
                                                             defer:NO];
    window.releasedWhenClosed = NO;
    window.title = nsString(spec.title);
    window.titleVisibility = spec.titleHidden ? NSWindowTitleHidden : NSWindowTitleVisible;
    window.titlebarAppearsTransparent = spec.titlebarTransparent;
    window.opaque = spec.backgroundAlpha >= 1;
    window.backgroundColor = [NSColor.windowBackgroundColor colorWithAlphaComponent:spec.backgroundAlpha];
    window.hasShadow = spec.hasShadow;
    [window standardWindowButton:NSWindowMiniaturizeButton].hidden = !spec.showsMiniaturizeAndZoom;
    [window standardWindowButton:NSWindowZoomButton].hidden = !spec.showsMiniaturizeAndZoom;
    return window;
}

class AppKitWindow : public NativeWindow {
  public:
    AppKitWindow(const WindowSpec& spec, std::function<void()> willClose)
        : window_(makeWindow(spec)), watch_([[PintleWindowWatch alloc] init]), layers_(window_.contentView) {
        watch_.willClose = std::move(willClose);
        window_.delegate = watch_;
    }
    ~AppKitWindow() override {
        watch_.willClose = nullptr;
        [window_ close];
    }
    AppKitWindow(const AppKitWindow&) = delete;
    AppKitWindow& operator=(const AppKitWindow&) = delete;

    void clip() override { layers_.clip(); }
    void addMaterial(NativeMaterial material) override { layers_.addMaterial(material); }
    void addView(NativeView view) override { layers_.addView(view); }
    void setMaterialOpacity(double opacity) override { layers_.setMaterialOpacity(opacity); }

    bool isVisible() const override { return window_.visible; }
    bool isKey() const override { return window_.keyWindow; }
    Rect frame() const override { return fromNsRect(window_.frame); }
    void setFrame(const Rect& frame) override { [window_ setFrame:nsRect(frame) display:YES]; }
    double titleStrip() const override {
        return window_.contentView.bounds.size.height - window_.contentLayoutRect.size.height;
    }
    void orderFrontRegardless() override { [window_ orderFrontRegardless]; }
    void makeKey() override { [window_ makeKeyWindow]; }
    void focus(NativeView view) override { [window_ makeFirstResponder:(__bridge NSView*)view]; }
    void close() override { [window_ close]; }

  private:
    NSWindow* window_;
    PintleWindowWatch* watch_;
    AppKitLayers layers_;
};

}  // namespace

std::unique_ptr<NativeWindow> makeNativeWindow(const WindowSpec& spec, std::function<void()> willClose) {
    return std::make_unique<AppKitWindow>(spec, std::move(willClose));
}

}  // namespace pintle
