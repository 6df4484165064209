// Property lists through libplist. Made by the root; used by the preference store and the cursor backup.
#pragma once

#include <memory>

#include "platform/property_list_coder.h"

namespace pintle {

/// Reads lists of up to 64 MiB and 128 levels; anything beyond is absent, as is a list with a null or a set.
/// An unsigned integer above the signed range reads as the nearest real, a UID as the dictionary {"CF$UID":
/// n} that stands for it in XML. Dates keep microseconds in the binary form near the present (1933 to 2068),
/// otherwise whole seconds. Writes no text with a NUL, invalid UTF-8 or, in XML, a character that XML
/// forbids.
std::unique_ptr<PropertyListCoder> makePlistCoder();

}  // namespace pintle
