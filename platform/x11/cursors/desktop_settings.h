// Which cursor theme and size the desktop itself uses now, worked out from what its settings channels say.
// Pure functions over bytes and texts that strangers wrote; any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/freedesktop/xsettings.h"

namespace pintle::x11 {

/// Answers an environment variable; absent when it is not set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

struct CursorThemeChoice {
    /// Empty: the desktop names none, which leaves the theme "default".
    std::string theme;
    /// Nominal, in pixels.
    int size = 0;
    friend bool operator==(const CursorThemeChoice&, const CursorThemeChoice&) = default;
};

/// The value of a resource such as "Xcursor.theme" in the text of the resource manager. Absent when the text
/// does not set it; the last setting counts.
std::optional<std::string> resourceValue(std::string_view resources, std::string_view application,
                                         std::string_view resource);

/// How many pixels a point has each way: the settings manager's factor for windows, and without a manager the
/// dots per inch of texts in steps of a quarter. 1 to 4; 1 where nothing is said that makes sense.
double pixelsPerPoint(const std::optional<CursorXSettings>& published, std::string_view resources);

/// Settings manager before environment before resources before what the cursor library takes by default.
CursorThemeChoice chooseCursorTheme(const CursorXSettings& settings, const Environment& environment,
                                    std::string_view resources, int screenWidth, int screenHeight);

}  // namespace pintle::x11
