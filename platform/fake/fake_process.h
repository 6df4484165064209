// The small process-wide fakes: hints and the instance bus.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/signal.h"
#include "platform/instance_bus.h"
#include "platform/process_hints.h"

namespace pintle {

class FakeProcessHints : public ProcessHints {
  public:
    Subscription beginActivity(const std::string& reason) override {
        begun.push_back(reason);
        active->insert(reason);
        return Subscription([active = active, reason] { active->erase(active->find(reason)); });
    }
    void releaseFreeMemory() override { ++releases; }

    std::vector<std::string> begun;
    std::shared_ptr<std::multiset<std::string>> active = std::make_shared<std::multiset<std::string>>();
    int releases = 0;
};

class FakeInstanceBus : public InstanceBus {
  public:
    bool anotherCopyRuns() override { return another; }
    void post(const std::string& name) override { posted.push_back(name); }
    Subscription observe(const std::string& name, std::function<void()> received) override {
        return messages.observe([name, received = std::move(received)](const std::string& arrived) {
            if (arrived == name) received();
        });
    }
    Subscription observeOlderCopy(std::function<void()> found) override {
        return olderCopies.observe(std::move(found));
    }
    /// A message of another copy.
    void receive(const std::string& name) { messages.emit(name); }

    bool another = false;
    std::vector<std::string> posted;
    Signal<const std::string&> messages;
    Signal<> olderCopies;
};

}  // namespace pintle
