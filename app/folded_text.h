// Text as it is compared in a search: without case and accents. Pure; any thread.
#pragma once

#include <string>
#include <string_view>

namespace pintle {

/// `text`, which is UTF-8, with small letters of the Latin, Greek and Cyrillic alphabets, the Latin ones
/// without accents. Everything else, bytes that are no text included, stays as it is. In the same way
/// whatever the locale.
std::string foldedText(std::string_view text);

/// How many bytes the first character of `text`, which is not empty, has; 1 for a byte that begins none.
std::size_t firstCharacterLength(std::string_view text);

}  // namespace pintle
