// What an XSETTINGS manager publishes in a property of its window (the XSETTINGS protocol of
// freedesktop.org). Pure functions over bytes that strangers wrote; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace pintle {

/// One entry of what a settings manager publishes. Colours are left out.
struct XSetting {
    std::string name;
    std::variant<std::int32_t, std::string> value;
    friend bool operator==(const XSetting&, const XSetting&) = default;
};

/// Reads the property of a settings manager. Stops at the first thing that is not as the format says and
/// keeps what came before.
std::vector<XSetting> readXSettings(std::span<const std::uint8_t> property);

/// What a settings manager publishes about cursors and about the pixels of a point.
struct CursorXSettings {
    std::optional<std::string> themeName = std::nullopt;
    std::optional<int> themeSize = std::nullopt;
    std::optional<int> windowScalingFactor = std::nullopt;
    friend bool operator==(const CursorXSettings&, const CursorXSettings&) = default;
};

CursorXSettings parseXSettings(std::span<const std::uint8_t> property);

}  // namespace pintle
