#include "platform/mac/mac_popovers.h"

#import <AppKit/AppKit.h>

#include "platform/mac/native_button.h"
#include "platform/mac/ns_geometry.h"

@interface PintlePopoverWatch : NSObject <NSPopoverDelegate>
@property(nonatomic) std::function<void()> didClose;
@end

@implementation PintlePopoverWatch
- (void)popoverDidClose:(NSNotification*)notification {
    (void)notification;
    if (self.didClose) self.didClose();
}
@end

namespace pintle {
namespace {

class MacPopover : public Popover {
  public:
    MacPopover(const PopoverSpec& spec, NativeViews& views)
        : views_(views), popover_([[NSPopover alloc] init]), watch_([[PintlePopoverWatch alloc] init]) {
        popover_.contentSize = NSMakeSize(spec.contentSize.width, spec.contentSize.height);
        popover_.behavior = spec.transient ? NSPopoverBehaviorTransient : NSPopoverBehaviorApplicationDefined;
        popover_.animates = spec.animates;
        popover_.delegate = watch_;
    }
    ~MacPopover() override {
        watch_.didClose = nullptr;
        [popover_ close];
    }
    MacPopover(const MacPopover&) = delete;
    MacPopover& operator=(const MacPopover&) = delete;

    bool isShown() const override { return popover_.shown; }
    void show(const StatusItem& item, const Rect&) override {
        NSStatusBarButton* const button = nativeButton(item);
        NSView* const view = (__bridge NSView*)views_.popover();
        // A button in no window, as in a full menu bar, makes the desktop throw.
        if (!button.window || !view) return;
        if (!popover_.contentViewController) takeIn(view);
        views_.willShow((__bridge NativeView)view, popover_.animates);
        [popover_ showRelativeToRect:button.bounds ofView:button preferredEdge:NSRectEdgeMinY];
        views_.didShow((__bridge NativeView)view);
        [view.window makeFirstResponder:view];
    }
    void close() override { [popover_ close]; }

  private:
    void takeIn(NSView* view) {
        const NativeView native = (__bridge NativeView)view;
        NSViewController* const controller = [[NSViewController alloc] init];
        const NSSize size = popover_.contentSize;
        controller.view = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
        view.frame = nsRect(views_.popoverFrame({size.width, size.height}));
        view.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
        [controller.view addSubview:view];
        popover_.contentViewController = controller;
        watch_.didClose = [this, native] { views_.didHide(native); };
        views_.setClose(native, [this] { close(); });
    }

    NativeViews& views_;
    NSPopover* popover_;
    PintlePopoverWatch* watch_;
};

class MacPopovers : public Popovers {
  public:
    explicit MacPopovers(NativeViews& views) : views_(views) {}
    std::unique_ptr<Popover> makePopover(const PopoverSpec& spec) override {
        return std::make_unique<MacPopover>(spec, views_);
    }

  private:
    NativeViews& views_;
};

}  // namespace

std::unique_ptr<Popovers> makeMacPopovers(NativeViews& views) { return std::make_unique<MacPopovers>(views); }

}  // namespace pintle
