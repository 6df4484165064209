// The hand a theme's pointers are drawn for; also the choice of the popover's filter. Any thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace pintle {

enum class CursorHandedness : std::uint8_t {
    /// Only as a filter: no filtering. No theme has it.
    all,
    universal,
    rightHanded,
    leftHanded,
};

namespace cursor_handedness {

inline constexpr std::array allCases = {CursorHandedness::all, CursorHandedness::universal,
                                        CursorHandedness::rightHanded, CursorHandedness::leftHanded};

/// The text that stands for the case in storage and on screen.
constexpr std::string_view rawValue(CursorHandedness handedness) {
    constexpr std::array<std::string_view, allCases.size()> texts = {"All", "Universal", "Right", "Left"};
    return texts[static_cast<std::size_t>(handedness)];
}

/// The case whose text is exactly `text`; absent for any other text.
constexpr std::optional<CursorHandedness> fromRawValue(std::string_view text) {
    for (const auto handedness : allCases)
        if (rawValue(handedness) == text) return handedness;
    return std::nullopt;
}

}  // namespace cursor_handedness
}  // namespace pintle
