#include "platform/mac/cf_notifications.h"

#include <memory>
#include <utility>

#include "platform/mac/cf.h"

namespace pintle {
namespace {

struct Observer {
    std::function<void()> received;
};

extern "C" void distributedNotificationReceived(CFNotificationCenterRef, void* observer, CFNotificationName,
                                                const void*, CFDictionaryRef) {
    // The handler may end its own subscription.
    const auto received = static_cast<Observer*>(observer)->received;
    received();
}

}  // namespace

void postDistributed(const std::string& name) {
    CFNotificationCenterPostNotificationWithOptions(CFNotificationCenterGetDistributedCenter(),
                                                    cfString(name).get(), nullptr, nullptr,
                                                    kCFNotificationDeliverImmediately);
}

Subscription observeDistributed(const std::string& name, std::function<void()> received) {
    const auto observer = std::make_shared<Observer>(Observer{std::move(received)});
    const auto text = cfString(name);
    CFNotificationCenterAddObserver(CFNotificationCenterGetDistributedCenter(), observer.get(),
                                    distributedNotificationReceived, text.get(), nullptr,
                                    CFNotificationSuspensionBehaviorDeliverImmediately);
    return Subscription([observer, text] {
        CFNotificationCenterRemoveObserver(CFNotificationCenterGetDistributedCenter(), observer.get(),
                                           text.get(), nullptr);
    });
}

}  // namespace pintle
