// Numbers of the Xcursor format: all fields are unsigned 32-bit little-endian.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

namespace pintle::xcursor {

inline constexpr std::uint32_t kMagic = 0x72756358;
inline constexpr std::uint32_t kImageType = 0xFFFD0002;
/// The table of contents begins here whatever header size the file gives.
inline constexpr std::uint64_t kHeaderBytes = 16;
inline constexpr std::uint64_t kTocEntryBytes = 12;
inline constexpr std::uint64_t kChunkHeaderBytes = 36;
inline constexpr std::uint64_t kMaxPixels = std::uint64_t{4096} * 4096;

/// A value as it stands in the file, in this machine's byte order.
constexpr std::uint32_t fromFile(std::uint32_t value) {
    if constexpr (std::endian::native == std::endian::little) return value;
    return value >> 24 | (value >> 8 & 0xFF00) | (value << 8 & 0xFF0000) | value << 24;
}

/// The field at `offset`; 0 when it is not wholly inside `bytes`.
inline std::uint32_t field(std::span<const std::uint8_t> bytes, std::uint64_t offset) {
    std::uint32_t value = 0;
    if (offset > bytes.size() || bytes.size() - offset < sizeof value) return 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return fromFile(value);
}

}  // namespace pintle::xcursor
