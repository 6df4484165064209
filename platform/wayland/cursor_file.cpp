#include "platform/wayland/cursor_file.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <set>
#include <utility>

#include "base/resample.h"

namespace pintle::wayland {
namespace {

constexpr int kLongestSide = 2048;
constexpr double kLargestScale = 8;
constexpr double kLongestDelay = 60 * 60 * 1000;
// Frames without time would make a compositor draw without pause.
constexpr std::uint32_t kShortestDelay = 10;
constexpr std::uint64_t kLargestFile = std::uint64_t{64} << 20;

constexpr std::uint32_t kMagic = 0x72756358;
constexpr std::uint32_t kFileHeaderBytes = 16;
constexpr std::uint32_t kFileVersion = 0x10000;
constexpr std::uint32_t kTocEntryBytes = 12;
constexpr std::uint32_t kImageType = 0xFFFD0002;
constexpr std::uint32_t kImageHeaderBytes = 36;
constexpr std::uint32_t kImageVersion = 1;

/// One frame of a registered picture: rows [top, top + height) of `image`, `width` pixels each.
struct Frame {
    Bitmap image;
    int top = 0;
};

struct Frames {
    std::vector<Frame> list;
    int width = 0;
    int height = 0;
    /// The sides in points.
    int pointWidth = 0;
    int pointHeight = 0;
    std::uint32_t delay = 0;
};

std::optional<Frames> framesOf(const RegisteredCursor& cursor) {
    const auto usable = [](double side) { return side >= 1 && side <= kLongestSide; };
    const Size pixels = {cursor.size.width * cursor.pixelsPerPoint,
                         cursor.size.height * cursor.pixelsPerPoint};
    if (cursor.images.empty() || cursor.frameCount < 1 || !usable(cursor.size.width) ||
        !usable(cursor.size.height) || !usable(pixels.width) || !usable(pixels.height))
        return std::nullopt;
    Frames frames;
    frames.width = static_cast<int>(std::lround(pixels.width));
    frames.height = static_cast<int>(std::lround(pixels.height));
    frames.pointWidth = static_cast<int>(std::lround(cursor.size.width));
    frames.pointHeight = static_cast<int>(std::lround(cursor.size.height));
    const auto holds = [&](const Bitmap& image, std::uint64_t count) {
        return image.width() >= frames.width &&
               static_cast<std::uint64_t>(image.height() / frames.height) >= count;
    };
    if (cursor.images.size() > 1 && cursor.images.size() == cursor.frameCount) {
        for (const auto& image : cursor.images) {
            if (!holds(image, 1)) return std::nullopt;
            frames.list.push_back({image});
        }
    } else {
        const auto& strip = cursor.images.front();
        if (!holds(strip, cursor.frameCount)) return std::nullopt;
        for (std::uint64_t i = 0; i < cursor.frameCount; ++i)
            frames.list.push_back({strip, static_cast<int>(i) * frames.height});
    }
    if (frames.list.size() > 1) {
        const double milliseconds = cursor.frameDuration * 1000;
        frames.delay = milliseconds > kShortestDelay
                           ? static_cast<std::uint32_t>(std::lround(std::min(milliseconds, kLongestDelay)))
                           : kShortestDelay;
    }
    return frames;
}

std::vector<std::uint8_t> pixelsOf(const Frame& frame, int width, int height) {
    std::vector<std::uint8_t> pixels;
    const auto row = static_cast<std::size_t>(width) * 4;
    pixels.reserve(row * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        const auto* const from = frame.image.pixel(0, frame.top + y).data();
        pixels.insert(pixels.end(), from, from + row);
    }
    return pixels;
}

std::uint32_t argbAt(const std::uint8_t* rgba) {
    return std::uint32_t{rgba[3]} << 24 | std::uint32_t{rgba[0]} << 16 | std::uint32_t{rgba[1]} << 8 |
           rgba[2];
}

int scaled(int side, int nominal, int base) {
    if (nominal == base) return side;
    const auto value = static_cast<double>(side) * nominal / base;
    return static_cast<int>(std::lround(std::clamp(value, 1.0, kLongestSide + 1.0)));
}

std::uint32_t hotspotAt(double place, int nominal, int base, int side) {
    const double value = place * nominal / base;
    if (!(value > 0)) return 0;
    return static_cast<std::uint32_t>(std::lround(std::min(value, side - 1.0)));
}

int upTo(int side, int multiple) { return (side + multiple - 1) / multiple * multiple; }

void word(std::vector<std::uint8_t>& out, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
}

std::uint64_t chunkBytes(const FileImage& image) {
    return kImageHeaderBytes + std::uint64_t{4} * image.argb.size();
}

}  // namespace

bool holdsItsFrames(const RegisteredCursor& cursor) { return framesOf(cursor).has_value(); }

std::optional<std::vector<FileImage>> imagesOf(const RegisteredCursor& cursor, int base,
                                               std::span<const int> nominals) {
    const auto frames = framesOf(cursor);
    if (!frames || nominals.empty() || base < 1) return std::nullopt;
    Resampler resampler;
    const auto native = std::lround(base * cursor.pixelsPerPoint);
    std::vector<FileImage> images;
    for (const int nominal : nominals) {
        if (nominal < 1) return std::nullopt;
        const bool isAsRegistered = nominal == native;
        const int width = isAsRegistered ? frames->width : scaled(frames->pointWidth, nominal, base);
        const int height = isAsRegistered ? frames->height : scaled(frames->pointHeight, nominal, base);
        // A client at scale 2 draws an image whose sides are odd at twice or at less than its size; 12 is
        // divisible by 3 and 4 as well.
        const int multiple = nominal >= 3 * base ? 12 : 2;
        const int paddedWidth = upTo(width, multiple);
        const int paddedHeight = upTo(height, multiple);
        if (paddedWidth > kLongestSide || paddedHeight > kLongestSide) return std::nullopt;

        FileImage image;
        image.nominal = static_cast<std::uint32_t>(nominal);
        image.width = static_cast<std::uint32_t>(paddedWidth);
        image.height = static_cast<std::uint32_t>(paddedHeight);
        image.hotspotX = hotspotAt(cursor.hotspot.x, nominal, base, width);
        image.hotspotY = hotspotAt(cursor.hotspot.y, nominal, base, height);
        image.delay = frames->delay;
        for (const auto& frame : frames->list) {
            auto pixels = pixelsOf(frame, frames->width, frames->height);
            if (width != frames->width || height != frames->height) {
                std::vector<std::uint8_t> drawn(static_cast<std::size_t>(width) *
                                                static_cast<std::size_t>(height) * 4);
                resampler.draw(pixels, frames->width, frames->height, drawn, width, height);
                pixels = std::move(drawn);
            }
            image.argb.assign(static_cast<std::size_t>(paddedWidth) * static_cast<std::size_t>(paddedHeight),
                              0);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    image.argb[static_cast<std::size_t>(y) * static_cast<std::size_t>(paddedWidth) +
                               static_cast<std::size_t>(x)] =
                        argbAt(&pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                        static_cast<std::size_t>(x)) *
                                       4]);
            images.push_back(image);
        }
    }
    return images;
}

std::vector<int> nominalsFor(int base, std::span<const double> outputScales) {
    std::set<int> sizes = {base};
    for (const double scale : outputScales) {
        if (!(scale >= 1 && scale <= kLargestScale)) continue;
        sizes.insert(static_cast<int>(std::lround(base * scale)));
        sizes.insert(base * static_cast<int>(std::ceil(scale)));
    }
    return {sizes.begin(), sizes.end()};
}

std::optional<std::vector<std::uint8_t>> cursorFile(std::span<const FileImage> images) {
    if (images.empty()) return std::nullopt;
    std::uint64_t total = kFileHeaderBytes + std::uint64_t{kTocEntryBytes} * images.size();
    for (const auto& image : images) {
        const auto pixels = std::uint64_t{image.width} * image.height;
        if (pixels == 0 || pixels != image.argb.size()) return std::nullopt;
        total += chunkBytes(image);
        if (total > kLargestFile) return std::nullopt;
    }
    std::vector<std::uint8_t> out;
    out.reserve(static_cast<std::size_t>(total));
    word(out, kMagic);
    word(out, kFileHeaderBytes);
    word(out, kFileVersion);
    word(out, static_cast<std::uint32_t>(images.size()));
    auto position = kFileHeaderBytes + std::uint64_t{kTocEntryBytes} * images.size();
    for (const auto& image : images) {
        word(out, kImageType);
        word(out, image.nominal);
        word(out, static_cast<std::uint32_t>(position));
        position += chunkBytes(image);
    }
    for (const auto& image : images) {
        for (const auto value : {kImageHeaderBytes, kImageType, image.nominal, kImageVersion, image.width,
                                 image.height, image.hotspotX, image.hotspotY, image.delay})
            word(out, value);
        for (const auto pixel : image.argb) word(out, pixel);
    }
    return out;
}

}  // namespace pintle::wayland
