#include "platform/mac/cf_notifications.h"

#include <memory>
#include <utility>

#include "platform/mac/cf.h"

namespace pintle {
namespace {

struct Observer {
    std::function<void()> heard;
};

extern "C" void distributedNotificationHeard(CFNotificationCenterRef, void* observer, CFNotificationName,
                                             const void*, CFDictionaryRef) {
    // The handler may end its own subscription.
    const auto heard = static_cast<Observer*>(observer)->heard;
    heard();
}

}  // namespace

void postDistributed(const std::string& name) {
    CFNotificationCenterPostNotificationWithOptions(CFNotificationCenterGetDistributedCenter(),
                                                    cfString(name).get(), nullptr, nullptr,
                                                    kCFNotificationDeliverImmediately);
}

Subscription observeDistributed(const std::string& name, std::function<void()> heard) {
    const auto observer = std::make_shared<Observer>(Observer{std::move(heard)});
    const auto text = cfString(name);
    CFNotificationCenterAddObserver(CFNotificationCenterGetDistributedCenter(), observer.get(),
                                    distributedNotificationHeard, text.get(), nullptr,
                                    CFNotificationSuspensionBehaviorDeliverImmediately);
    return Subscription([observer, text] {
        CFNotificationCenterRemoveObserver(CFNotificationCenterGetDistributedCenter(), observer.get(),
                                           text.get(), nullptr);
    });
}

}  // namespace pintle
