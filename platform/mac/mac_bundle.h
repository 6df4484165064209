// What this program's bundle says of itself. Asked by the root in its first stage.
#pragma once

#include <filesystem>

#include "platform/bundle.h"

namespace pintle {

/// The identifier is empty for a program outside of a bundle.
Bundle readMacBundle();
/// The bundle's folder, or the program's for one outside of a bundle.
std::filesystem::path readMacBundlePath();

}  // namespace pintle
