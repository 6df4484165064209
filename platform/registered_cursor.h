// What the window server registers for, and reports of, one cursor identifier.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"

namespace pintle {

struct RegisteredCursor {
    /// Desktop cursor identifier, for example "com.apple.coregraphics.Arrow".
    std::string identifier;
    /// Normally one image: a still cursor, or all frames of an animation as one vertical strip with frame 0
    /// on top. A list that came from copyRegisteredCursorImages may hold several.
    std::vector<Bitmap> images;
    /// Of one frame, in points.
    Size size;
    /// In points from the top-left corner of a frame.
    Point hotspot;
    std::uint64_t frameCount = 1;
    /// Seconds per frame; 0 for a still cursor.
    double frameDuration = 0;
    /// Of a theme's images, each way; the sides of a frame are `size` times this, rounded. The desktop's own
    /// cursors have their images as they are.
    double pixelsPerPoint = 1;
    friend bool operator==(const RegisteredCursor&, const RegisteredCursor&) = default;
};

}  // namespace pintle
