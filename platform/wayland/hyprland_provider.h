// The pointer's theme and size of Hyprland, through its command socket. Written by its documentation; it has
// not been run against that compositor.
#pragma once

#include <memory>

#include "platform/wayland/settings_provider.h"

namespace pintle::wayland {

/// Null outside of Hyprland. What is set at the beginning is what the environment says.
std::unique_ptr<SettingsProvider> makeHyprlandProvider(const Environment& environment);

}  // namespace pintle::wayland
