// Screens and the pointer's place on them. Coordinates are global: points, y up, origin at the lower-left
// corner of the first screen. Main thread only; cheap enough to be asked 120 times a second.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/geometry.h"

namespace pintle {

using DisplayId = std::uint32_t;

struct Screen {
    Rect frame;
    /// Absent where the desktop does not report the number of this screen's display.
    std::optional<DisplayId> id;
    friend bool operator==(const Screen&, const Screen&) = default;
};

class Displays {
  public:
    virtual ~Displays() = default;
    /// The first screen carries the origin. Empty while no display is attached.
    virtual const std::vector<Screen>& screens() = 0;
    virtual DisplayId mainDisplayID() = 0;
    virtual Point mouseLocation() = 0;
};

}  // namespace pintle
