// The per-user preference store: a persistent domain over a volatile layer of registered defaults.
// Main thread only. Typed reads with their fall-backs are in settings/typed_defaults.h.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/property_value.h"
#include "base/subscription.h"

namespace pintle {

class KeyValueStore {
  public:
    virtual ~KeyValueStore() = default;
    /// The stored value, else the registered default, else absent.
    virtual std::optional<PropertyValue> object(const std::string& key) const = 0;
    /// Stores; on return the value survives the end of this process.
    virtual void set(const std::string& key, PropertyValue value) = 0;
    /// Removes the stored value; a registered default shows again.
    virtual void remove(const std::string& key) = 0;
    /// Adds to the volatile layer; never written.
    virtual void registerDefaults(const PropertyDictionary& defaults) = 0;
    /// Removes every stored value.
    virtual void removeDomain() = 0;
    /// `changed` runs after a write that made object(key) different, synchronously.
    virtual Subscription observe(std::string key, std::function<void()> changed) = 0;
    /// Brings everything written so far onto the disk.
    virtual void synchronize() = 0;
};

}  // namespace pintle
