// Which pixels of a cursor file a picture is drawn from where a point has more than one pixel each way.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "cursor/byte_source.h"
#include "cursor/pixel_pool.h"
#include "cursor/xcursor_image.h"

namespace pintle {

/// The sharper frames `of` one nominal size, one for each of its own in the same order.
struct DensitySource {
    std::int64_t of = 0;
    std::vector<XCursorImage> frames;
};

class OpenCursorFile;

/// What is read of one file.
struct CursorFileImages {
    /// In the order of its table of contents.
    std::vector<XCursorImage> images;
    std::vector<DensitySource> sources = {};
    /// Null when all was read. Else `images` are those of one nominal size, and have pixels where they are
    /// sent to the desktop.
    std::shared_ptr<OpenCursorFile> file = nullptr;
};

/// Names that are links to one file share it.
using XCursorImages = std::shared_ptr<const CursorFileImages>;

/// For each nominal size of `images`, which were read from `source`, the file's nominal size nearest to it
/// times `density` (the larger of two equally near ones) that has as many frames in its proportions to a
/// pixel. Sizes that are best drawn from themselves have no entry, nor those whose sharper frames are damaged
/// or too large. Reads nothing but what it needs of sizes that `images` lacks, with their pixels in `pool`.
std::vector<DensitySource> readDensitySources(ByteSource& source, const std::vector<XCursorImage>& images,
                                              double density, PixelPool& pool);

}  // namespace pintle
