#include "platform/mac/mac_key_value_store.h"

#include <utility>

#include "base/signal.h"
#include "platform/mac/cf_property.h"

namespace pintle {
namespace {

class MacKeyValueStore : public KeyValueStore {
  public:
    explicit MacKeyValueStore(const std::string& domain) : domain_(cfString(domain)) {}
    ~MacKeyValueStore() override { MacKeyValueStore::synchronize(); }

    std::optional<PropertyValue> object(const std::string& key) const override {
        const auto name = cfString(key);
        if (name) {
            const auto stored = CfRef<CFTypeRef>::adopt(CFPreferencesCopyValue(
                name.get(), domain_.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
            if (auto value = fromCfProperty(stored.get())) return value;
        }
        if (const auto found = defaults_.find(key); found != defaults_.end()) return found->second;
        return std::nullopt;
    }

    void set(const std::string& key, PropertyValue value) override {
        // A value without a form there must not take the stored one away.
        if (const auto property = toCfProperty(value)) write(key, property.get());
    }
    void remove(const std::string& key) override { write(key, nullptr); }

    void registerDefaults(const PropertyDictionary& defaults) override {
        for (const auto& [key, value] : defaults) defaults_.insert_or_assign(key, value);
    }

    void removeDomain() override {
        const auto keys = CfRef<CFArrayRef>::adopt(
            CFPreferencesCopyKeyList(domain_.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
        if (!keys) return;
        std::vector<std::pair<std::string, std::optional<PropertyValue>>> before;
        for (CFIndex i = 0; i < CFArrayGetCount(keys.get()); ++i) {
            std::string key = fromCfString(CFArrayGetValueAtIndex(keys.get(), i));
            auto value = object(key);
            before.emplace_back(std::move(key), std::move(value));
        }
        CFPreferencesSetMultiple(nullptr, keys.get(), domain_.get(), kCFPreferencesCurrentUser,
                                 kCFPreferencesAnyHost);
        synchronize();
        for (const auto& [key, value] : before)
            if (object(key) != value) changes_.emit(key);
    }

    Subscription observe(std::string key, std::function<void()> changed) override {
        return changes_.observe(
            [key = std::move(key), changed = std::move(changed)](const std::string& which) {
                if (which == key) changed();
            });
    }

    void synchronize() override {
        CFPreferencesSynchronize(domain_.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    }

  private:
    /// Null removes.
    void write(const std::string& key, CFPropertyListRef value) {
        const auto name = cfString(key);
        if (!name) return;
        const auto before = object(key);
        CFPreferencesSetValue(name.get(), value, domain_.get(), kCFPreferencesCurrentUser,
                              kCFPreferencesAnyHost);
        // Only what has been sent to the service survives the end of this process.
        synchronize();
        if (object(key) != before) changes_.emit(key);
    }

    const CfRef<CFStringRef> domain_;
    PropertyDictionary defaults_;
    Signal<const std::string&> changes_;
};

}  // namespace

std::unique_ptr<KeyValueStore> makeMacKeyValueStore(const std::string& domain) {
    return std::make_unique<MacKeyValueStore>(domain);
}

}  // namespace pintle
