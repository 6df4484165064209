// Builds Xcursor files in memory, sound by default, with each defect on request.
//
//     const auto file = XCursorBuilder().image({.size = 24}).image({.size = 32, .delay = 50}).bytes();
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace pintle {

struct XCursorChunk {
    /// Nominal size, written to the table of contents and the chunk.
    std::uint32_t size = 32;
    /// Pixels; absent means as the nominal size.
    std::optional<std::uint32_t> width = std::nullopt;
    std::optional<std::uint32_t> height = std::nullopt;
    std::uint32_t xhot = 0;
    std::uint32_t yhot = 0;
    /// Milliseconds.
    std::uint32_t delay = 0;
    /// 0xAARRGGBB of every pixel, when `pixels` is empty.
    std::uint32_t colour = 0xFF102030;
    /// The pixels as written, whatever width and height say; empty means width × height of `colour`.
    std::vector<std::uint32_t> pixels = {};
    /// Position given by the table of contents instead of the true one.
    std::optional<std::uint32_t> position = std::nullopt;
    /// Type given by the table of contents; the default is an image.
    std::uint32_t type = 0xFFFD0002;
    /// False leaves the pixels out although the header announces them.
    bool writePixels = true;
    /// Bytes written before the chunk, to shift it.
    std::uint32_t gapBefore = 0;
    /// False lists the chunk in the table of contents only.
    bool written = true;
};

class XCursorBuilder {
  public:
    XCursorBuilder& image(XCursorChunk chunk) {
        chunks_.push_back(std::move(chunk));
        return *this;
    }
    XCursorBuilder& magic(std::uint32_t value) {
        magic_ = value;
        return *this;
    }
    /// What the header says; the table stays at offset 16.
    XCursorBuilder& headerSize(std::uint32_t value) {
        headerSize_ = value;
        return *this;
    }
    XCursorBuilder& version(std::uint32_t value) {
        version_ = value;
        return *this;
    }
    /// What the header says; as many entries are written as there are images.
    XCursorBuilder& entryCount(std::uint32_t value) {
        entryCount_ = value;
        return *this;
    }

    std::vector<std::uint8_t> bytes() const {
        std::vector<std::uint8_t> body;
        std::vector<std::uint8_t> out;
        const auto bodyStart = static_cast<std::uint32_t>(16 + 12 * chunks_.size());
        word(out, magic_);
        word(out, headerSize_);
        word(out, version_);
        word(out, entryCount_.value_or(static_cast<std::uint32_t>(chunks_.size())));
        for (const auto& chunk : chunks_) {
            body.insert(body.end(), chunk.gapBefore, 0xEE);
            const auto start = bodyStart + static_cast<std::uint32_t>(body.size());
            word(out, chunk.type);
            word(out, chunk.size);
            word(out, chunk.position.value_or(start));
            if (chunk.written) write(body, chunk);
        }
        out.insert(out.end(), body.begin(), body.end());
        return out;
    }

    /// The file without its last `count` bytes.
    std::vector<std::uint8_t> bytesCutBy(std::size_t count) const {
        auto out = bytes();
        out.resize(out.size() - count);
        return out;
    }

  private:
    static void word(std::vector<std::uint8_t>& out, std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    static void write(std::vector<std::uint8_t>& out, const XCursorChunk& chunk) {
        const auto width = chunk.width.value_or(chunk.size);
        const auto height = chunk.height.value_or(chunk.size);
        for (const auto value : {std::uint32_t{36}, std::uint32_t{0xFFFD0002}, chunk.size, std::uint32_t{1},
                                 width, height, chunk.xhot, chunk.yhot, chunk.delay})
            word(out, value);
        if (!chunk.writePixels) return;
        if (chunk.pixels.empty()) {
            const auto count = std::uint64_t{width} * height;
            out.reserve(out.size() + static_cast<std::size_t>(count) * 4);
            for (std::uint64_t i = 0; i < count; ++i) word(out, chunk.colour);
        }
        for (const auto pixel : chunk.pixels) word(out, pixel);
    }

    std::vector<XCursorChunk> chunks_;
    std::uint32_t magic_ = 0x72756358;
    std::uint32_t headerSize_ = 16;
    std::uint32_t version_ = 0x10000;
    std::optional<std::uint32_t> entryCount_;
};

}  // namespace pintle
