// Judges the bytes of a property list before the library reads them: the library recurses and copies without
// a limit and lets some damage pass. Called by the coder, on any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace pintle {

inline constexpr std::size_t kLargestPropertyList = std::size_t{64} << 20;
inline constexpr int kDeepestPropertyList = 128;
/// In seconds since 2001-01-01: the years 1 to 9999, which are all that the XML form can express.
inline constexpr double kEarliestDate = -63113904000.0;
inline constexpr double kLatestDate = 252423993599.0;

/// Whether the bytes are one whole binary list: a table that is consistent, no cycle, at most
/// kDeepestPropertyList levels, bounded when shared objects are counted as often as they are referred to, and
/// only of types that a PropertyValue can hold.
bool isSoundBinaryPropertyList(std::span<const std::uint8_t> bytes);

/// The same list in a plain form (no prologue, comments or attributes), or absent when the bytes are not one
/// whole XML list of known elements, properly nested, with readable numbers and dates and nothing after it.
std::optional<std::string> plainXmlPropertyList(std::span<const std::uint8_t> bytes);

}  // namespace pintle
