// The steps of reading an Xcursor file from any source of bytes. Called by XCursorParser only; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "cursor/byte_source.h"
#include "cursor/pixel_pool.h"
#include "cursor/xcursor_parser.h"

namespace pintle {

/// The image entries of the table of contents; absent when the file header is rejected. Of
/// those alone whose entries are among the first `most`, where that is given.
std::optional<std::vector<XCursorParser::TocEntry>> readToc(ByteSource& source,
                                                            std::optional<std::uint32_t> most = std::nullopt);

/// The images of the wanted sizes, reading their bytes only, with their pixels in `pool`. Chunks that overlap
/// share memory, so that no file takes much more than its own length.
std::optional<std::vector<XCursorImage>> readImages(ByteSource& source,
                                                    std::optional<std::int64_t> maxNominalSize,
                                                    PixelPool& pool);

/// Those of readImages() whose nominal size is nearest to `nominalSize`, the earlier in the table of equally
/// near ones; of more than are sent to the desktop only the sent ones have pixels. Absent when any of them is
/// damaged, since which size is nearest then depends on the others, when two are the same chunk, when there
/// are thousands of them, and when the memory is short.
std::optional<std::vector<XCursorImage>> readNearestSize(ByteSource& source, std::int64_t nominalSize,
                                                         std::int64_t maxNominalSize, PixelPool& pool);

/// See XCursorParser::parseNearest().
std::optional<XCursorImage> readNearestImage(ByteSource& source, std::int64_t nominalSize,
                                             std::int64_t maxNominalSize, PixelPool& pool);

std::optional<std::vector<XCursorParser::Header>> readHeaders(ByteSource& source);

/// The images of these entries without their pixels. Absent when one of them is damaged or has more than a
/// million pixels.
std::optional<std::vector<XCursorImage>> readImageHeaders(ByteSource& source,
                                                          std::span<const XCursorParser::TocEntry> entries);
/// The same with their pixels in `pool`; absent when they cannot be read or the file has changed since.
std::optional<std::vector<XCursorImage>> readWholeImages(ByteSource& source,
                                                         std::span<const XCursorParser::TocEntry> entries,
                                                         std::span<const XCursorImage> headers,
                                                         PixelPool& pool);

}  // namespace pintle
