// The reader's rules written down one after the other, with no thought of speed or memory. Tests and fuzz
// targets hold the real reader to it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "cursor/xcursor_parser.h"

namespace pintle {

struct PlainImage {
    std::int64_t size = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t xhot = 0;
    std::int64_t yhot = 0;
    std::uint32_t delay = 0;
    /// Offset of the first pixel in the file.
    std::uint64_t firstPixel = 0;
};

class PlainXCursorReader {
  public:
    explicit PlainXCursorReader(std::span<const std::uint8_t> data) : data_(data) {}

    std::optional<std::vector<XCursorParser::TocEntry>> toc() const {
        if (data_.size() < 16) return std::nullopt;
        if (word(0) != 0x72756358 || word(4) < 16 || word(12) == 0) return std::nullopt;
        std::vector<XCursorParser::TocEntry> entries;
        std::uint64_t cursor = 16;
        for (std::uint64_t i = 0; i < word(12); ++i, cursor += 12) {
            if (cursor + 12 > data_.size()) break;
            if (word(cursor) == 0xFFFD0002) entries.push_back({word(cursor + 4), word(cursor + 8)});
        }
        return entries;
    }

    std::optional<std::vector<PlainImage>> images(std::optional<std::int64_t> limit) const {
        const auto entries = toc();
        if (!entries) return std::nullopt;
        std::int64_t smallest = 0;
        for (std::size_t i = 0; i < entries->size(); ++i)
            smallest =
                i == 0 ? (*entries)[i].subtype : std::min<std::int64_t>(smallest, (*entries)[i].subtype);
        std::vector<PlainImage> images;
        for (const auto& [size, position] : *entries) {
            if (limit && *limit < size && size != smallest) continue;
            const std::uint64_t at = position;
            if (at + 36 > data_.size()) continue;
            const std::uint64_t count = std::uint64_t{word(at + 16)} * word(at + 20);
            if (count < 1 || count > 16777216) continue;
            if (at + 36 + 4 * count > data_.size()) continue;
            images.push_back(
                {size, word(at + 16), word(at + 20), word(at + 24), word(at + 28), word(at + 32), at + 36});
        }
        if (images.empty()) return std::nullopt;
        return images;
    }

    std::optional<std::vector<XCursorParser::Header>> headers() const {
        const auto entries = toc();
        if (!entries) return std::nullopt;
        std::vector<XCursorParser::Header> headers;
        for (const auto& [size, position] : *entries)
            if (std::uint64_t{position} + 36 <= data_.size())
                headers.push_back({size, word(std::uint64_t{position} + 32)});
        if (headers.empty()) return std::nullopt;
        return headers;
    }

    /// Whether `read` is what these rules give, pixel by pixel.
    bool agreesWith(const std::optional<std::vector<XCursorImage>>& read,
                    std::optional<std::int64_t> limit) const {
        const auto expected = images(limit);
        if (expected.has_value() != read.has_value()) return false;
        if (!expected) return true;
        return std::equal(
            expected->begin(), expected->end(), read->begin(), read->end(),
            [&](const PlainImage& plain, const XCursorImage& image) { return same(plain, image); });
    }

  private:
    std::uint32_t word(std::uint64_t at) const {
        std::uint32_t value = 0;
        for (std::uint64_t i = 4; i-- > 0;) value = value << 8 | data_[static_cast<std::size_t>(at + i)];
        return value;
    }
    bool same(const PlainImage& plain, const XCursorImage& image) const {
        const auto pixels = image.pixels.values();
        if (plain.size != image.size || plain.width != image.width || plain.height != image.height ||
            plain.xhot != image.xhot || plain.yhot != image.yhot || plain.delay != image.delay ||
            pixels.size() != static_cast<std::uint64_t>(plain.width * plain.height))
            return false;
        for (std::size_t i = 0; i < pixels.size(); ++i)
            if (pixels[i] != word(plain.firstPixel + 4 * i)) return false;
        return true;
    }

    std::span<const std::uint8_t> data_;
};

}  // namespace pintle
