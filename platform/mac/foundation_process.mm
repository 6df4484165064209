#include "platform/mac/foundation_process.h"

#import <Foundation/Foundation.h>

#include "platform/mac/ns_text.h"

namespace pintle {

void inAutoreleasePool(const std::function<void()>& work) {
    @autoreleasepool {
        work();
    }
}

Subscription beginProcessActivity(const std::string& reason) {
    NSProcessInfo* const process = NSProcessInfo.processInfo;
    const id<NSObject> token = [process beginActivityWithOptions:NSActivityUserInitiated
                                                          reason:nsString(reason)];
    return Subscription([process, token] { [process endActivity:token]; });
}

UserDirectories readUserDirectories() {
    NSURL* const support = [NSFileManager.defaultManager URLsForDirectory:NSApplicationSupportDirectory
                                                                inDomains:NSUserDomainMask]
                               .firstObject;
    return {fromNsString(support.path), fromNsString(NSTemporaryDirectory()),
            fromNsString(NSHomeDirectory())};
}

}  // namespace pintle
