// One X11 cursor made ready at one scale and density, so that applying it decodes and resamples nothing. Pure
// functions of what was read and of both; any thread.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"
#include "cursor/density_source.h"
#include "cursor/frame_list.h"

namespace pintle {

struct PreloadedCursor {
    /// The X11 cursor name, which is the name of the cursor's file.
    std::string name;
    /// The still image, or the first frame.
    Bitmap image;
    /// Points from the top-left corner, scaled, not rounded.
    Point hotspot;
    /// All frames in file order, of which those that are sent to the desktop are drawn; empty for a still
    /// cursor.
    FrameList frames;
    /// Seconds per frame; 0 when no usable delay is known.
    double frameDuration = 0;
    /// Pixels of the images that a point has each way.
    double pixelsPerPoint = 1;
    /// Of `image` in points; absent where a point is a pixel.
    std::optional<Size> pointSize = std::nullopt;

    /// Of `image`, in points.
    Size size() const { return pointSize.value_or(image.size()); }
    friend bool operator==(const PreloadedCursor&, const PreloadedCursor&) = default;
};

/// The cursor `name` at `scale` (1.0 is the desktop's normal size) from its file's images, a pixel a point.
/// Absent when no image can be made.
std::optional<PreloadedCursor> makePreloaded(const std::string& name, const std::vector<XCursorImage>& images,
                                             double scale);

/// makePreloaded for each entry in order, leaving out those that give nothing. Names that share one file
/// share the work and the pixels. `density` is the number of pixels that a point has each way, at least 1:
/// above 1 a picture has round(side × density) pixels, drawn at once from the sources that were read for it.
std::vector<PreloadedCursor> makePreloadedSet(
    const std::vector<std::pair<std::string, XCursorImages>>& cursors, double scale, double density = 1);

}  // namespace pintle
