#include "platform/mac/appkit_application.h"

#import <AppKit/AppKit.h>
#import <UserNotifications/UserNotifications.h>

#include "platform/mac/ns_text.h"

namespace pintle {

static_assert(static_cast<int>(ActivationPolicy::regular) == NSApplicationActivationPolicyRegular);
static_assert(static_cast<int>(ActivationPolicy::accessory) == NSApplicationActivationPolicyAccessory);
static_assert(static_cast<int>(ActivationPolicy::prohibited) == NSApplicationActivationPolicyProhibited);

void setNativeActivationPolicy(ActivationPolicy policy) {
    [NSApp setActivationPolicy:static_cast<NSApplicationActivationPolicy>(policy)];
}

void activateNatively() {
// -activate, which took its place, guarantees nothing for a program without a place in the dock.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
    [NSApp activateIgnoringOtherApps:YES];
#pragma clang diagnostic pop
}

void openNatively(const std::string& url) {
    NSURL* const address = [NSURL URLWithString:nsString(url)];
    if (address) [NSWorkspace.sharedWorkspace openURL:address];
}

void notifyNatively(const std::string& title, const std::string& text) {
    UNUserNotificationCenter* const centre = UNUserNotificationCenter.currentNotificationCenter;
    UNMutableNotificationContent* const content = [[UNMutableNotificationContent alloc] init];
    content.title = nsString(title);
    content.body = nsString(text);
    UNNotificationRequest* const request = [UNNotificationRequest requestWithIdentifier:NSUUID.UUID.UUIDString
                                                                                content:content
                                                                                trigger:nil];
    [centre requestAuthorizationWithOptions:UNAuthorizationOptionAlert
                          completionHandler:^(BOOL granted, NSError*) {
                            if (granted) [centre addNotificationRequest:request withCompletionHandler:nil];
                          }];
}

void terminateNatively() {
    [NSOperationQueue.mainQueue addOperationWithBlock:^{
      [NSApp terminate:nil];
    }];
}

}  // namespace pintle
