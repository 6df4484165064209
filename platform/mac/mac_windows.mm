#include "platform/mac/mac_windows.h"

#import <AppKit/AppKit.h>

#include "platform/mac/appkit_screens.h"
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

NSWindow* makeNativeWindow(const WindowSpec& spec) {
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

class MacShellWindow : public ShellWindow {
  public:
    MacShellWindow(const WindowSpec& spec, NSView* view, NativeViews& views)
        : views_(views),
          view_(view),
          window_(makeNativeWindow(spec)),
          watch_([[PintleWindowWatch alloc] init]) {
        const NativeView native = (__bridge NativeView)view;
        watch_.willClose = [this, native] { views_.didHide(native); };
        window_.delegate = watch_;
        view_.frame = window_.contentView.bounds;
        view_.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
        [window_.contentView addSubview:view_];
        views_.setClose(native, [this] { close(); });
    }
    ~MacShellWindow() override {
        watch_.willClose = nullptr;
        [window_ close];
    }
    MacShellWindow(const MacShellWindow&) = delete;
    MacShellWindow& operator=(const MacShellWindow&) = delete;

    bool isVisible() const override { return window_.visible; }
    bool isKey() const override { return window_.keyWindow; }
    Rect frame() const override { return fromNsRect(window_.frame); }
    void setFrame(const Rect& frame) override { [window_ setFrame:nsRect(frame) display:YES]; }
    void makeKeyAndOrderFront() override {
        views_.willShow((__bridge NativeView)view_, true);
        [window_ makeKeyAndOrderFront:nil];
        views_.didShow((__bridge NativeView)view_);
        [window_ makeFirstResponder:view_];
    }
    void close() override { [window_ close]; }

  private:
    NativeViews& views_;
    NSView* view_;
    NSWindow* window_;
    PintleWindowWatch* watch_;
};

class MacWindows : public Windows {
  public:
    explicit MacWindows(NativeViews& views) : views_(views) {}
    std::unique_ptr<ShellWindow> makeWindow(const WindowSpec& spec) override {
        NSView* const view = (__bridge NSView*)views_.window(spec.content);
        if (!view) return nullptr;
        return std::make_unique<MacShellWindow>(spec, view, views_);
    }
    std::vector<ScreenArea> screens() const override {
        std::vector<ScreenArea> areas;
        for (const ScreenReading& screen : readScreens()) areas.push_back({screen.frame, screen.workArea});
        return areas;
    }
    Point mouseLocation() const override { return readMouseLocation(); }

  private:
    NativeViews& views_;
};

}  // namespace

std::unique_ptr<Windows> makeMacWindows(NativeViews& views) { return std::make_unique<MacWindows>(views); }

}  // namespace pintle
