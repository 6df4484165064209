#include "platform/mac/appkit_popover.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/mac/appkit_layers.h"
#include "platform/mac/native_button.h"

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

class AppKitPopover : public NativePopover {
  public:
    AppKitPopover(const PopoverSpec& spec, std::function<void()> didClose)
        : popover_([[NSPopover alloc] init]),
          watch_([[PintlePopoverWatch alloc] init]),
          content_([[NSView alloc]
              initWithFrame:NSMakeRect(0, 0, spec.contentSize.width, spec.contentSize.height)]),
          layers_(content_) {
        NSViewController* const controller = [[NSViewController alloc] init];
        controller.view = content_;
        popover_.contentViewController = controller;
        popover_.contentSize = NSMakeSize(spec.contentSize.width, spec.contentSize.height);
        popover_.behavior = spec.transient ? NSPopoverBehaviorTransient : NSPopoverBehaviorApplicationDefined;
        popover_.animates = spec.animates;
        watch_.didClose = std::move(didClose);
        popover_.delegate = watch_;
    }
    ~AppKitPopover() override {
        watch_.didClose = nullptr;
        [popover_ close];
    }
    AppKitPopover(const AppKitPopover&) = delete;
    AppKitPopover& operator=(const AppKitPopover&) = delete;

    void clip() override { layers_.clip(); }
    void addMaterial(NativeMaterial material) override { layers_.addMaterial(material); }
    void addView(NativeView view) override { layers_.addView(view); }
    void setMaterialOpacity(double opacity) override { layers_.setMaterialOpacity(opacity); }

    bool isShown() const override { return popover_.shown; }
    bool canShow(const StatusItem& item) const override { return nativeButton(item).window != nil; }
    void show(const StatusItem& item) override {
        NSStatusBarButton* const button = nativeButton(item);
        [popover_ showRelativeToRect:button.bounds ofView:button preferredEdge:NSRectEdgeMinY];
    }
    void makeKey(NativeView view) override {
        [content_.window makeKeyWindow];
        [content_.window makeFirstResponder:(__bridge NSView*)view];
    }
    void close() override { [popover_ close]; }

  private:
    NSPopover* popover_;
    PintlePopoverWatch* watch_;
    NSView* content_;
    AppKitLayers layers_;
};

}  // namespace

std::unique_ptr<NativePopover> makeNativePopover(const PopoverSpec& spec, std::function<void()> didClose) {
    return std::make_unique<AppKitPopover>(spec, std::move(didClose));
}

}  // namespace pintle
