// Byte order of pixels. Pure functions; any thread.
#pragma once

#include <cstdint>
#include <span>

namespace pintle {

/// Writes each 0xAARRGGBB value as the bytes R, G, B, A; `to` has room for all of them.
void writeRgba(std::span<const std::uint32_t> from, std::uint8_t* to);

}  // namespace pintle
