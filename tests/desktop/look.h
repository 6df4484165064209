// What a pointer looks like, as one word that two programs can compare: size, hotspot and a hash of the
// pixels. Shared by pointer_probe and expected_cursor so that both spell it alike; no other code.
#pragma once

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <string>

namespace look {

/// FNV-1a over width × height values 0xAARRGGBB, rows from the top.
template <typename PixelAt>
std::uint64_t hashPixels(std::size_t count, PixelAt pixelAt) {
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (std::size_t i = 0; i < count; ++i) {
        const auto pixel = static_cast<std::uint32_t>(pixelAt(i));
        for (int shift = 0; shift < 32; shift += 8) {
            hash ^= (pixel >> shift) & 0xffu;
            hash *= 0x100000001b3u;
        }
    }
    return hash;
}

/// "WIDTHxHEIGHT+XHOT+YHOT:HASH", all in pixels from the top-left corner.
inline std::string word(int width, int height, int xhot, int yhot, std::uint64_t hash) {
    char text[96];
    std::snprintf(text, sizeof text, "%dx%d+%d+%d:%016" PRIx64, width, height, xhot, yhot, hash);
    return text;
}

}  // namespace look
