// Writes cursor files (the format that libXcursor's manual page xcursor(3) describes), one picture at one or
// more nominal sizes. Pure functions over values; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/registered_cursor.h"

namespace pintle::wayland {

struct FileImage {
    std::uint32_t nominal = 0;
    /// Pixels.
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    /// Pixels from the top-left corner, inside the image.
    std::uint32_t hotspotX = 0;
    std::uint32_t hotspotY = 0;
    /// Milliseconds; 0 for a still picture.
    std::uint32_t delay = 0;
    /// width × height values 0xAARRGGBB, premultiplied, rows from the top.
    std::vector<std::uint32_t> argb;
    friend bool operator==(const FileImage&, const FileImage&) = default;
};

/// Whether imagesOf() can make something of it.
bool holdsItsFrames(const RegisteredCursor& cursor);

/// The frames of a registered picture at each of the sizes, frame by frame within a size. `base` is the size
/// at which a point is a pixel; at `base` times its own pixels of a point the picture is as it is. The others
/// are drawn anew from it, hotspots rounded. Sides are filled up with transparent pixels on the right and
/// below, so that every output scale divides them. Absent when the record does not hold its frames, when a
/// side would leave 1 to 2048 pixels, or without sizes.
std::optional<std::vector<FileImage>> imagesOf(const RegisteredCursor& cursor, int base,
                                               std::span<const int> nominals);

/// The sizes that a theme needs for outputs of these scales: `base` itself, and for each scale what the
/// compositor asks for and what clients that know whole scales only ask for. Ascending, each once. Scales
/// that are no numbers from 1 to 8 are left out.
std::vector<int> nominalsFor(int base, std::span<const double> outputScales);

/// Absent without images, when an image does not hold its pixels, or when the file would be larger than 64
/// MiB.
std::optional<std::vector<std::uint8_t>> cursorFile(std::span<const FileImage> images);

}  // namespace pintle::wayland
