// Property lists by reference: the bytes only name a value that this process has encoded before.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/property_list_coder.h"

namespace pintle {

class FakePropertyListCoder : public PropertyListCoder {
  public:
    std::optional<std::vector<std::uint8_t>> encode(const PropertyValue& value,
                                                    PropertyListFormat format) override {
        if (encodingFails) return std::nullopt;
        lastFormat = format;
        encodedValues().push_back(value);
        const std::string text = kMark + std::to_string(encodedValues().size() - 1) + kEnd;
        return std::vector<std::uint8_t>(text.begin(), text.end());
    }
    std::optional<PropertyValue> decode(std::span<const std::uint8_t> bytes) override {
        const std::string text(bytes.begin(), bytes.end());
        if (!text.starts_with(kMark)) return std::nullopt;
        const auto index = static_cast<std::size_t>(std::strtoull(text.c_str() + kMark.size(), nullptr, 10));
        if (index >= encodedValues().size() || text != kMark + std::to_string(index) + kEnd)
            return std::nullopt;
        return encodedValues()[index];
    }

    bool encodingFails = false;
    std::optional<PropertyListFormat> lastFormat;

  private:
    static std::vector<PropertyValue>& encodedValues() {
        static std::vector<PropertyValue> values;
        return values;
    }
    inline static const std::string kMark = "fake property list ";
    inline static const std::string kEnd = "\n";
};

}  // namespace pintle
