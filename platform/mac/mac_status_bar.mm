#include "platform/mac/mac_status_bar.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/mac/native_button.h"
#include "platform/mac/native_events.h"
#include "platform/mac/native_menu.h"
#include "platform/mac/ns_geometry.h"
#include "platform/mac/ns_text.h"

@interface PintleStatusTarget : NSObject
@property(nonatomic) pintle::StatusItem::Action action;
- (void)statusBarClicked:(id)sender;
@end

namespace pintle {
namespace {

static_assert(kNativeLeftMouseUp == NSEventTypeLeftMouseUp);
static_assert(kNativeRightMouseUp == NSEventTypeRightMouseUp);

/// The desktop does not number its presses.
std::optional<StatusItemEvent> readingOf(NSEvent* event) {
    if (!event) return std::nullopt;
    return StatusItemEvent{statusItemEventType(event.type), std::nullopt};
}

}  // namespace
}  // namespace pintle

@implementation PintleStatusTarget
- (void)statusBarClicked:(id)sender {
    (void)sender;
    if (self.action) self.action(pintle::readingOf(NSApp.currentEvent));
}
@end

namespace pintle {
namespace {

class MacStatusItem : public StatusItem {
  public:
    explicit MacStatusItem(double length)
        : item_([NSStatusBar.systemStatusBar statusItemWithLength:length]),
          target_([[PintleStatusTarget alloc] init]) {}
    ~MacStatusItem() override { [NSStatusBar.systemStatusBar removeStatusItem:item_]; }
    MacStatusItem(const MacStatusItem&) = delete;
    MacStatusItem& operator=(const MacStatusItem&) = delete;

    std::string description() const override { return fromNsString(item_.description); }
    bool hasButton() const override { return item_.button != nil; }
    void setImage(const StatusItemImage& image) override {
        NSImage* const symbol = [NSImage imageWithSystemSymbolName:nsString(image.symbol)
                                          accessibilityDescription:nsString(image.accessibilityDescription)];
        [symbol setTemplate:image.isTemplate];
        item_.button.image = symbol;
    }
    void setAction(Action action) override {
        target_.action = std::move(action);
        item_.button.target = target_;
        item_.button.action = @selector(statusBarClicked:);
        [item_.button sendActionOn:NSEventMaskLeftMouseUp | NSEventMaskRightMouseUp];
    }
    // An assistive program presses the button as the mouse does: through the action.
    void setActivation(std::function<void()>) override {}
    std::optional<Rect> buttonFrame() const override {
        NSStatusBarButton* const button = item_.button;
        NSWindow* const window = button.window;
        if (!window) return std::nullopt;
        return fromNsRect([window convertRectToScreen:[button convertRect:button.bounds toView:nil]]);
    }

    void attachMenu(const Menu& menu) override { item_.menu = makeNativeMenu(menu); }
    void performClick() override { [item_.button performClick:nil]; }
    void detachMenu() override { item_.menu = nil; }
    // The menu bar asks this program for every menu.
    void setHostMenu(std::function<Menu()>) override {}

    NSStatusBarButton* button() const { return item_.button; }

  private:
    NSStatusItem* item_;
    PintleStatusTarget* target_;
};

class MacStatusBar : public StatusBar {
  public:
    std::unique_ptr<StatusItem> makeStatusItem(double length) override {
        return std::make_unique<MacStatusItem>(length);
    }
    bool isAvailable() const override { return true; }
};

}  // namespace

NSStatusBarButton* nativeButton(const StatusItem& item) {
    return static_cast<const MacStatusItem&>(item).button();
}

std::unique_ptr<StatusBar> makeMacStatusBar() { return std::make_unique<MacStatusBar>(); }

}  // namespace pintle
