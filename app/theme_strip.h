// A theme's most used cursors in a row, to show what it looks like as a whole. Reads files; any thread.
#pragma once

#include <filesystem>
#include <vector>

#include "base/bitmap.h"

namespace pintle {

struct StripCursor {
    /// At least one; as many as the window server would be sent.
    std::vector<Bitmap> frames;
    /// Seconds per frame as they would be sent; 0 for a still cursor.
    double frameDuration = 0;
    friend bool operator==(const StripCursor&, const StripCursor&) = default;
};

/// No side of a frame is longer, in pixels.
inline constexpr int kLongestStripSide = 48;

/// Pointer, text, hand, busy, resize and forbidden, in this order; those that the theme has and that can be
/// read. Keeps nothing and logs nothing.
std::vector<StripCursor> readThemeStrip(const std::filesystem::path& cursorsFolder);

}  // namespace pintle
