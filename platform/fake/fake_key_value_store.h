// A preference store in memory. `domain` may be shared by several stores, one after another, as a file is.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/signal.h"
#include "platform/key_value_store.h"

namespace pintle {

class FakeKeyValueStore : public KeyValueStore {
  public:
    explicit FakeKeyValueStore(
        std::shared_ptr<PropertyDictionary> shared = std::make_shared<PropertyDictionary>())
        : domain(std::move(shared)) {}

    std::optional<PropertyValue> object(const std::string& key) const override {
        if (const auto found = domain->find(key); found != domain->end()) return found->second;
        if (const auto found = defaults.find(key); found != defaults.end()) return found->second;
        return std::nullopt;
    }
    void set(const std::string& key, PropertyValue value) override {
        change(key, [&] { domain->insert_or_assign(key, std::move(value)); });
        writes.push_back(key);
    }
    void remove(const std::string& key) override {
        change(key, [&] { domain->erase(key); });
        removals.push_back(key);
    }
    void registerDefaults(const PropertyDictionary& values) override {
        ++registerDefaultsCalls;
        for (const auto& [key, value] : values) defaults.insert_or_assign(key, value);
    }
    void removeDomain() override {
        const auto old = *domain;
        for (const auto& entry : old) change(entry.first, [&] { domain->erase(entry.first); });
        ++domainRemovals;
    }
    Subscription observe(std::string key, std::function<void()> changed) override {
        return changes_.observe(
            [key = std::move(key), changed = std::move(changed)](const std::string& which) {
                if (which == key) changed();
            });
    }
    void synchronize() override { ++synchronizations; }

    std::shared_ptr<PropertyDictionary> domain;
    PropertyDictionary defaults;
    /// Keys in the order of their writes and removals.
    std::vector<std::string> writes;
    std::vector<std::string> removals;
    int registerDefaultsCalls = 0;
    int domainRemovals = 0;
    int synchronizations = 0;

  private:
    template <typename Change>
    void change(const std::string& key, Change apply) {
        const auto before = object(key);
        apply();
        if (before != object(key)) changes_.emit(key);
    }
    Signal<const std::string&> changes_;
};

}  // namespace pintle
