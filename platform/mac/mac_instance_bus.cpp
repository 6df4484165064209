#include "platform/mac/mac_instance_bus.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "platform/mac/appkit_workspace.h"
#include "platform/mac/cf_notifications.h"

namespace pintle {
namespace {

class MacInstanceBus : public InstanceBus {
  public:
    MacInstanceBus(std::string bundleIdentifier, MainQueue& queue)
        : bundleIdentifier_(std::move(bundleIdentifier)), queue_(queue) {}

    bool anotherCopyRuns() override {
        const auto copies = readRunningCopies(bundleIdentifier_);
        const auto self = static_cast<std::int32_t>(::getpid());
        return std::any_of(copies.begin(), copies.end(), [self](std::int32_t pid) { return pid != self; });
    }
    void post(const std::string& name) override { postDistributed(name); }
    Subscription observe(const std::string& name, std::function<void()> received) override {
        auto shared = std::make_shared<std::function<void()>>(std::move(received));
        return observeDistributed(name, [&queue = queue_, weak = std::weak_ptr(shared), keep = shared] {
            queue.post([weak] {
                if (const auto alive = weak.lock()) (*alive)();
            });
        });
    }
    // The list of running programs is the desktop's own; copies cannot lose sight of each other.
    Subscription observeOlderCopy(std::function<void()>) override { return {}; }

  private:
    const std::string bundleIdentifier_;
    MainQueue& queue_;
};

}  // namespace

std::unique_ptr<InstanceBus> makeMacInstanceBus(const std::string& bundleIdentifier, MainQueue& queue) {
    return std::make_unique<MacInstanceBus>(bundleIdentifier, queue);
}

}  // namespace pintle
