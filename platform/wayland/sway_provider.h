// The pointer's theme and size of sway, through its own socket. Sway forgets them when its configuration is
// loaded again, and cannot be asked for them.
#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "platform/wayland/settings_provider.h"

namespace pintle::wayland {

/// Null outside of sway. What is set at the beginning is what the environment says.
std::unique_ptr<SettingsProvider> makeSwayProvider(const Environment& environment);

/// Of the outputs that are switched on; empty outside of sway and when it does not answer.
std::vector<double> swayOutputScales(const Environment& environment);

}  // namespace pintle::wayland
