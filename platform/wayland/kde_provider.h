// The pointer's theme and size in the settings of KDE, and the signal by which its compositor reads them
// again.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/wayland/settings_provider.h"

namespace pintle::wayland {

struct KdeOptions {
    /// kcminputrc in the user's configuration folder.
    std::filesystem::path file;
    /// Of the session bus.
    std::string busAddress;
};

/// Null outside of KDE, and without a bus or a configuration folder.
std::unique_ptr<SettingsProvider> makeKdeProvider(const Environment& environment);
std::unique_ptr<SettingsProvider> makeKdeProvider(KdeOptions options);

}  // namespace pintle::wayland
