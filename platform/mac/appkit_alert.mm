#include "platform/mac/appkit_alert.h"

#import <AppKit/AppKit.h>

#include "platform/mac/ns_text.h"

namespace pintle {

static_assert(NSAlertFirstButtonReturn == 1000);

long runNativeAlert(const Alert& alert) {
    NSAlert* const native = [[NSAlert alloc] init];
    native.alertStyle = alert.style == AlertStyle::warning ? NSAlertStyleWarning : NSAlertStyleInformational;
    native.messageText = nsString(alert.message);
    native.informativeText = nsString(alert.informativeText);
    for (const std::string& button : alert.buttons) [native addButtonWithTitle:nsString(button)];
    return [native runModal];
}

}  // namespace pintle
