// Ready cursors of plain colours for tests that need no file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "cursor/preloaded_cursor.h"

namespace pintle {

/// A bitmap whose every byte is `value`.
inline Bitmap plainBitmap(int width, int height, std::uint8_t value) {
    return *Bitmap::create(width, height, [&](std::span<std::uint8_t> out) {
        for (auto& byte : out) byte = value;
    });
}

inline PreloadedCursor stillCursor(const std::string& name, int side = 24, std::uint8_t value = 1) {
    return {name, plainBitmap(side, side, value), {1.5, 2.5}, {}, 0};
}

/// Frame i has the value i + 1.
inline PreloadedCursor animatedCursor(const std::string& name, std::size_t frames, double frameDuration,
                                      int side = 4) {
    PreloadedCursor cursor{name, plainBitmap(side, side, 1), {0, 0}, {}, frameDuration};
    for (std::size_t i = 0; i < frames; ++i)
        cursor.frames.push_back(plainBitmap(side, side, static_cast<std::uint8_t>(i + 1)));
    return cursor;
}

}  // namespace pintle
