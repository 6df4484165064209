// One X11 cursor made ready at one scale, so that applying it decodes and resamples nothing. Pure functions
// of the parsed images and the scale; any thread.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"
#include "cursor/xcursor_image.h"

namespace pintle {

struct PreloadedCursor {
    /// The X11 cursor name, which is the name of the cursor's file.
    std::string name;
    /// The still image, or the first frame.
    Bitmap image;
    /// Points from the top-left corner, scaled, not rounded.
    Point hotspot;
    /// All frames in file order; empty for a still cursor.
    std::vector<Bitmap> frames;
    /// Seconds per frame; 0 when no usable delay is known.
    double frameDuration = 0;
    friend bool operator==(const PreloadedCursor&, const PreloadedCursor&) = default;
};

/// The cursor `name` at `scale` (1.0 is the desktop's normal size) from its file's images. Absent when no
/// image can be made.
std::optional<PreloadedCursor> makePreloaded(const std::string& name, const std::vector<XCursorImage>& images,
                                             double scale);

/// makePreloaded for each entry in order, leaving out those that give nothing. Names that share one file
/// share the work and the pixels.
std::vector<PreloadedCursor> makePreloadedSet(
    const std::vector<std::pair<std::string, XCursorImages>>& cursors, double scale);

}  // namespace pintle
