#include "platform/mac/appkit_appearance.h"

#import <AppKit/AppKit.h>

#include <utility>

@interface PintleAppearanceWatch : NSObject
- (instancetype)initWithChanged:(std::function<void()>)changed;
@end

@implementation PintleAppearanceWatch {
    std::function<void()> _changed;
}
- (instancetype)initWithChanged:(std::function<void()>)changed {
    self = [super init];
    if (self) _changed = std::move(changed);
    return self;
}
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    (void)keyPath, (void)object, (void)change, (void)context;
    _changed();
}
@end

namespace pintle {
namespace {

NSString* const kEffectiveAppearance = @"effectiveAppearance";

}  // namespace

DesktopLook readDesktopLook() {
    NSWorkspace* const workspace = NSWorkspace.sharedWorkspace;
    NSAppearanceName const best = [NSApp.effectiveAppearance
        bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    DesktopLook look;
    look.dark = [best isEqualToString:NSAppearanceNameDarkAqua];
    look.reducedMotion = workspace.accessibilityDisplayShouldReduceMotion;
    look.highContrast = workspace.accessibilityDisplayShouldIncreaseContrast;
    look.blendsWindows = !workspace.accessibilityDisplayShouldReduceTransparency;
    return look;
}

Subscription observeEffectiveAppearance(std::function<void()> changed) {
    NSApplication* const application = NSApp;
    PintleAppearanceWatch* const watch = [[PintleAppearanceWatch alloc] initWithChanged:std::move(changed)];
    [application addObserver:watch forKeyPath:kEffectiveAppearance options:0 context:nullptr];
    return Subscription(
        [application, watch] { [application removeObserver:watch forKeyPath:kEffectiveAppearance]; });
}

}  // namespace pintle
