// Names on the in-process notification centre. Four changes of the settings, whose object is the new value,
// and three requests of the user interface to the application shell, which carry no object.
#pragma once

#include <string_view>

namespace pintle::notification {

/// Object: double.
inline constexpr std::string_view cursorScaleChanged = "cursorScaleChanged";
/// Object: bool.
inline constexpr std::string_view alwaysUseThemedCursorChanged = "alwaysUseThemedCursorChanged";
/// Object: std::vector<std::string>.
inline constexpr std::string_view excludedAppsChanged = "excludedAppsChanged";
/// Object: bool.
inline constexpr std::string_view glassModeChanged = "glassModeChanged";

inline constexpr std::string_view openSettingsRequest = "openSettingsRequest";
inline constexpr std::string_view openAboutRequest = "openAboutRequest";
inline constexpr std::string_view quitAppRequest = "quitAppRequest";

}  // namespace pintle::notification
