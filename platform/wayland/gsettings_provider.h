// The pointer's theme and size in GSettings, which the shells and toolkits that follow GNOME's settings read.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/wayland/settings_provider.h"

namespace pintle::wayland {

struct GSettingsOptions {
    std::string schema = "org.gnome.desktop.interface";
    /// A file of its own for the values; absent: where this desktop keeps its settings.
    std::optional<std::filesystem::path> keyfile;
};

/// Null without the schema or its keys, and where what is set would be forgotten with this process.
std::unique_ptr<SettingsProvider> makeGSettingsProvider(const GSettingsOptions& options);

}  // namespace pintle::wayland
