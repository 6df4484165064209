// The value tree of property lists and of the preference store. Value semantics.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace pintle {

class PropertyValue;
using PropertyArray = std::vector<PropertyValue>;
using PropertyDictionary = std::map<std::string, PropertyValue>;
using PropertyData = std::vector<std::uint8_t>;
/// Seconds since 2001-01-01 00:00:00 UTC, the epoch of property lists.
struct PropertyDate {
    double seconds = 0;
    friend bool operator==(const PropertyDate&, const PropertyDate&) = default;
};

class PropertyValue {
  public:
    using Storage = std::variant<bool, std::int64_t, double, std::string, PropertyData, PropertyDate,
                                 PropertyArray, PropertyDictionary>;

    PropertyValue(bool value) : storage_(value) {}
    PropertyValue(int value) : storage_(std::int64_t{value}) {}
    PropertyValue(std::int64_t value) : storage_(value) {}
    PropertyValue(double value) : storage_(value) {}
    PropertyValue(const char* value) : storage_(std::string(value)) {}
    PropertyValue(std::string value) : storage_(std::move(value)) {}
    PropertyValue(PropertyData value) : storage_(std::move(value)) {}
    PropertyValue(PropertyDate value) : storage_(value) {}
    PropertyValue(PropertyArray value) : storage_(std::move(value)) {}
    PropertyValue(PropertyDictionary value) : storage_(std::move(value)) {}

    /// The value when it is of exactly this type, otherwise null.
    template <typename T>
    const T* as() const {
        return std::get_if<T>(&storage_);
    }
    const Storage& storage() const { return storage_; }

    friend bool operator==(const PropertyValue&, const PropertyValue&) = default;

  private:
    Storage storage_;
};

}  // namespace pintle
