// The address of a theme's archive, from the catalog's text. Pure functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pintle {

/// Whether the text is an address by the grammar of URIs (RFC 3986): no blanks, no characters outside ASCII,
/// every percent sign with its two digits, at least one character.
bool isAddress(std::string_view text);

/// What is fetched for a catalog address: the address itself, or the same path at the mirror's scheme and
/// host. Absent when either does not parse, or the mirror is more than scheme, host and port.
std::optional<std::string> downloadAddress(const std::string& catalogAddress,
                                           const std::optional<std::string>& mirror);

}  // namespace pintle
