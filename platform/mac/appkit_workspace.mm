#include "platform/mac/appkit_workspace.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/mac/ns_text.h"

namespace pintle {
namespace {

std::optional<RunningApplication> readingOf(NSRunningApplication* application) {
    if (!application) return std::nullopt;
    NSString* const name = application.localizedName;
    return RunningApplication{name ? std::optional(fromNsString(name)) : std::nullopt,
                              application.processIdentifier};
}

NSNotificationCenter* centreOf(NotificationSource source) {
    return source == NotificationSource::workspace ? NSWorkspace.sharedWorkspace.notificationCenter
                                                   : NSNotificationCenter.defaultCenter;
}

}  // namespace

std::optional<RunningApplication> readFrontmostApplication() {
    return readingOf(NSWorkspace.sharedWorkspace.frontmostApplication);
}

std::vector<std::int32_t> readRunningCopies(const std::string& bundleIdentifier) {
    NSString* const identifier = nsString(bundleIdentifier);
    std::vector<std::int32_t> copies;
    for (NSRunningApplication* copy in
         [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier])
        if (!copy.terminated) copies.push_back(copy.processIdentifier);
    return copies;
}

Subscription observeNotification(NotificationSource source, const std::string& name,
                                 std::function<void(std::optional<RunningApplication>)> posted) {
    NSNotificationCenter* const centre = centreOf(source);
    const id token = [centre addObserverForName:nsString(name)
                                         object:nil
                                          queue:NSOperationQueue.mainQueue
                                     usingBlock:^(NSNotification* notification) {
                                       posted(readingOf(notification.userInfo[NSWorkspaceApplicationKey]));
                                     }];
    return Subscription([centre, token] { [centre removeObserver:token]; });
}

}  // namespace pintle
