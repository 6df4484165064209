// The changes of the survival test, as its writer makes them and the test expects them: the number of a
// change says everything about its value.
#pragma once

#include <cstdint>
#include <string>

#include "base/property_value.h"

namespace pintle::survival {

inline constexpr int kKinds = 6;

/// What change number `number` of this kind stores; kind 0 removes.
inline PropertyValue valueOf(int kind, std::int64_t number) {
    switch (kind) {
        case 1:
            return number;
        case 2:
            return static_cast<double>(number) + 0.25;
        case 3:
            return "text <&> ä " + std::to_string(number);
        case 4: {
            PropertyArray names;
            for (std::int64_t i = 0; i < number % 40; ++i) names.emplace_back("name " + std::to_string(i));
            names.emplace_back(std::to_string(number));
            return names;
        }
        default:
            return PropertyDictionary{{"number", number}, {"even", number % 2 == 0}};
    }
}

}  // namespace pintle::survival
