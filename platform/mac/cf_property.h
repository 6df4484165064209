// Property values as Core Foundation objects and back. Used by the preference store and the property-list
// coder. Any thread.
#pragma once

#include <optional>

#include "base/property_value.h"
#include "platform/mac/cf.h"

namespace pintle {

/// Levels of containers; deeper trees have no form here.
inline constexpr int kDeepestCfProperty = 128;

/// Null when a text in it is not UTF-8 or it is too deep.
CfRef<CFTypeRef> toCfProperty(const PropertyValue& value);
/// Absent for null, for types that a PropertyValue cannot hold and when it is too deep.
std::optional<PropertyValue> fromCfProperty(CFTypeRef value);

}  // namespace pintle
