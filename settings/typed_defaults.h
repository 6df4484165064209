// Typed reads of the preference store with the fall-backs of the desktop platform's user defaults: a value of
// another type is converted where that has one meaning, and otherwise reads as false, 0.0 or absent. A
// registered default answers only for a key without a stored value, never for an ill-typed one.
// Main thread only, as the store is.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/key_value_store.h"

namespace pintle {

/// A number is true unless it is 0; a text is true when it says yes, true or 1 in any letter case. Everything
/// else, and a missing value, is false.
bool boolValue(const KeyValueStore& store, const std::string& key);

/// A number, a bool as 1 or 0, or the number that a text begins with. Everything else is 0.0.
double doubleValue(const KeyValueStore& store, const std::string& key);

/// A text, or a number written out. Absent for everything else.
std::optional<std::string> stringValue(const KeyValueStore& store, const std::string& key);

/// Absent unless the value is an array of texts alone.
std::optional<std::vector<std::string>> stringArrayValue(const KeyValueStore& store, const std::string& key);

/// Absent unless the value is a dictionary whose values are texts alone.
std::optional<std::map<std::string, std::string>> stringDictionaryValue(const KeyValueStore& store,
                                                                        const std::string& key);

/// The decimal number that `text` begins with, after blanks; the same in every locale. Absent when it begins
/// with none, or with one too large for a double.
std::optional<double> leadingDouble(std::string_view text);

}  // namespace pintle
