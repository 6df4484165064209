// Property lists (the XML and binary forms of "Apple Property List 1.0"). Stateless; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/property_value.h"

namespace pintle {

enum class PropertyListFormat { binary, xml };

class PropertyListCoder {
  public:
    virtual ~PropertyListCoder() = default;
    /// Absent when the value has no form as a property list.
    virtual std::optional<std::vector<std::uint8_t>> encode(const PropertyValue& value,
                                                            PropertyListFormat format) = 0;
    /// Reads either form. Absent when the bytes are not one whole property list.
    virtual std::optional<PropertyValue> decode(std::span<const std::uint8_t> bytes) = 0;
};

}  // namespace pintle
