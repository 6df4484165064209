// Whether a property list that was written and read again is the same one.
#pragma once

#include <algorithm>
#include <cmath>

#include "base/property_value.h"
#include "platform/property_list_coder.h"

namespace pintle {

/// Numbers that are none are equal to each other. Dates lose what is below a microsecond near the present and
/// a part of a second further away; in XML they are whole seconds.
inline bool sameProperty(const PropertyValue& a, const PropertyValue& b, PropertyListFormat format) {
    const auto* const real = a.as<double>();
    const auto* const otherReal = b.as<double>();
    if (real && otherReal) return *real == *otherReal || (std::isnan(*real) && std::isnan(*otherReal));
    const auto* const date = a.as<PropertyDate>();
    const auto* const otherDate = b.as<PropertyDate>();
    if (date && otherDate) {
        const bool isExact = format == PropertyListFormat::binary && std::abs(date->seconds) < 1e9;
        return std::abs(date->seconds - otherDate->seconds) <= (isExact ? 1e-5 : 1.0);
    }
    const auto* const array = a.as<PropertyArray>();
    const auto* const otherArray = b.as<PropertyArray>();
    if (array && otherArray)
        return std::ranges::equal(*array, *otherArray, [&](const auto& left, const auto& right) {
            return sameProperty(left, right, format);
        });
    const auto* const dictionary = a.as<PropertyDictionary>();
    const auto* const otherDictionary = b.as<PropertyDictionary>();
    if (dictionary && otherDictionary)
        return std::ranges::equal(*dictionary, *otherDictionary, [&](const auto& left, const auto& right) {
            return left.first == right.first && sameProperty(left.second, right.second, format);
        });
    return a == b;
}

}  // namespace pintle
