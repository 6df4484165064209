// The frames of an animation as one picture. Pure; any thread.
#pragma once

#include <optional>
#include <span>

#include "base/bitmap.h"

namespace pintle {

/// The frames below one another, frame 0 on top, each drawn at the first frame's size. One frame is answered
/// as it is. Absent when there is no frame or the strip's memory cannot be had.
std::optional<Bitmap> composeStrip(std::span<const Bitmap> frames);

}  // namespace pintle
