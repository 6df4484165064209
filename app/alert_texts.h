// The texts of alerts that are made elsewhere, taken apart again where a part of one is a version, so that
// the rest can be translated. Pure; any thread.
#pragma once

#include <array>
#include <string_view>

#include "app/user_text.h"

namespace pintle {

/// `english` as an alert has it.
UserText alertText(std::string_view english);

namespace alert_text {

inline constexpr auto available = translatable("Pintle", "Pintle %1 is available");
inline constexpr auto replace = translatable(
    "Pintle", "You have version %1. Download the new version and replace Pintle in Applications.");
inline constexpr auto download = translatable("Pintle", "Download");
inline constexpr auto later = translatable("Pintle", "Later");
inline constexpr auto upToDate = translatable("Pintle", "Pintle is up to date");
inline constexpr auto latest = translatable("Pintle", "You have the latest version.");
inline constexpr auto failed = translatable("Pintle", "Could not check for updates");
inline constexpr auto tryAgain = translatable("Pintle", "Check your internet connection and try again.");
inline constexpr auto ok = translatable("Pintle", "OK");
inline constexpr std::array all = {available, replace, download, later, upToDate,
                                   latest,    failed,  tryAgain, ok};

}  // namespace alert_text
}  // namespace pintle
