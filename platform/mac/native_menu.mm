#include "platform/mac/native_menu.h"

#include <utility>

#include "platform/mac/ns_text.h"

@interface PintleMenuTarget : NSObject
- (instancetype)initWithAction:(std::function<void()>)action;
- (void)run:(id)sender;
@end

@implementation PintleMenuTarget {
    std::function<void()> _action;
}
- (instancetype)initWithAction:(std::function<void()>)action {
    self = [super init];
    if (self) _action = std::move(action);
    return self;
}
- (void)run:(id)sender {
    (void)sender;
    if (_action) _action();
}
@end

namespace pintle {
namespace {

NSMenuItem* makeItem(const MenuItem& item) {
    if (item.isSeparator) return [NSMenuItem separatorItem];
    NSMenuItem* const native = [[NSMenuItem alloc] initWithTitle:nsString(item.title)
                                                          action:@selector(run:)
                                                   keyEquivalent:nsString(item.keyEquivalent)];
    PintleMenuTarget* const target = [[PintleMenuTarget alloc] initWithAction:item.action];
    native.target = target;
    // The item does not keep its target.
    native.representedObject = target;
    return native;
}

}  // namespace

NSMenu* makeNativeMenu(const Menu& menu) {
    NSMenu* const native = [[NSMenu alloc] initWithTitle:@""];
    for (const MenuItem& item : menu.items) [native addItem:makeItem(item)];
    return native;
}

}  // namespace pintle
