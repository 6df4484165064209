// AppKit's screens and mouse without Objective-C. Main thread only; global points, y up.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/geometry.h"

namespace pintle {

struct ScreenReading {
    Rect frame;
    /// Without the menu bar and the dock.
    Rect workArea;
    std::optional<std::uint32_t> number;
};

/// The first screen carries the origin.
std::vector<ScreenReading> readScreens();
Point readMouseLocation();

}  // namespace pintle
