// How the desktop wants programs to look, worked out from what its settings channels say. Pure functions over
// names and numbers that strangers wrote; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/appearance.h"
#include "platform/freedesktop/xsettings.h"

namespace pintle {

/// What the desktop portal reported; absent where it reported nothing.
struct PortalLook {
    /// 0 no preference, 1 dark, 2 light.
    std::optional<std::uint32_t> colorScheme = std::nullopt;
    /// 0 no preference, 1 higher.
    std::optional<std::uint32_t> contrast = std::nullopt;
    /// 0 no preference, 1 reduced.
    std::optional<std::uint32_t> reducedMotion = std::nullopt;
    /// The desktop's own settings, which some portals pass on.
    std::optional<bool> animations = std::nullopt;
    std::optional<bool> highContrast = std::nullopt;
    std::optional<double> textScale = std::nullopt;
    friend bool operator==(const PortalLook&, const PortalLook&) = default;
};

/// What the settings manager of the X screen published; absent where it did not.
struct PublishedLook {
    std::optional<bool> dark = std::nullopt;
    std::optional<bool> animations = std::nullopt;
    std::optional<bool> highContrast = std::nullopt;
    /// Of texts, in dots per inch, before the scale of the windows.
    std::optional<double> dpi = std::nullopt;
    friend bool operator==(const PublishedLook&, const PublishedLook&) = default;
};

PublishedLook publishedLook(const std::vector<XSetting>& settings);

/// Whether a theme of this name is a dark one: the name has the word "dark" in it or ends in it.
bool isDarkThemeName(std::string_view name);

/// `toolkitScalesByDpi`: the toolkit makes everything larger by the dots per inch, so that texts have their
/// size already.
DesktopLook desktopLook(const PortalLook& portal, const PublishedLook& published, bool blendsWindows,
                        bool toolkitScalesByDpi);

}  // namespace pintle
