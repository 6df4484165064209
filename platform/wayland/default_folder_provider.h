// The theme "default" of the user, which programs without a setting and without environment load when they
// start.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/wayland/settings_provider.h"

namespace pintle::wayland {

/// Of one icon folder: the file default/index.theme in it, kept and put back byte for byte. Null where
/// "default" is there but no folder of its own that holds nothing else: then it is a whole theme or a link to
/// one. `name`: under which the state file knows this one.
std::unique_ptr<SettingsProvider> makeDefaultFolderProvider(std::string name,
                                                            const std::filesystem::path& icons);

}  // namespace pintle::wayland
