// What the index file of a cursor theme says about others. Pure functions over text that strangers wrote; any
// thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pintle::x11 {

/// The themes that are asked for what this one lacks, in order: the first line that sets them counts, in
/// whatever group, as in the cursor library. Names may be anything but empty.
std::vector<std::string> inheritedThemes(std::string_view text);

}  // namespace pintle::x11
