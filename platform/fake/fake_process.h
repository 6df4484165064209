// The small process-wide fakes: hints and the instance bus.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

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
    bool another = false;
};

}  // namespace pintle
