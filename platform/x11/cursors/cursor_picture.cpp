#include "platform/x11/cursors/cursor_picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace pintle::x11 {
namespace {

// Far beyond any pointer, and small enough that the server's memory is never in question.
constexpr int kLongestSide = 2048;
// Of all frames: each is sent while the program waits, and kept by the server once for each name.
constexpr std::uint64_t kMostPixels = std::uint64_t{kLongestSide} * kLongestSide;
// Frames without time would make the server draw without pause.
constexpr std::uint32_t kShortestDelay = 10;
constexpr std::uint32_t kLongestDelay = 60 * 60 * 1000;

int roundedAndClamped(double value, int side) {
    if (!(value > 0)) return 0;
    if (value >= side) return side - 1;
    return std::min(static_cast<int>(std::lround(value)), side - 1);
}

std::uint32_t delayOf(double seconds) {
    const double milliseconds = seconds * 1000;
    if (!(milliseconds > kShortestDelay)) return kShortestDelay;
    if (milliseconds >= kLongestDelay) return kLongestDelay;
    return static_cast<std::uint32_t>(std::lround(milliseconds));
}

std::uint64_t mixed(std::uint64_t state, std::uint64_t value) {
    state = (state ^ value) * 0x9E3779B97F4A7C15ULL;
    return state ^ (state >> 29);
}

bool samePixels(const CursorFrame& a, const CursorFrame& b) {
    if (a.image.pixel(0, a.top).data() == b.image.pixel(0, b.top).data()) return true;
    const auto row = static_cast<std::size_t>(a.width) * 4;
    for (int y = 0; y < a.height; ++y)
        if (std::memcmp(a.image.pixel(0, a.top + y).data(), b.image.pixel(0, b.top + y).data(), row) != 0)
            return false;
    return true;
}

}  // namespace

Fingerprint fingerprintOf(std::uint32_t width, std::uint32_t height, std::uint32_t hotspotX,
                          std::uint32_t hotspotY, std::span<const std::uint32_t> pixels) {
    std::uint64_t state = mixed(0xD6E8FEB86659FD93ULL, (std::uint64_t{width} << 32) | height);
    state = mixed(state, (std::uint64_t{hotspotX} << 32) | hotspotY);
    for (const auto pixel : pixels) state = mixed(state, pixel);
    return mixed(state, pixels.size());
}

std::vector<std::uint32_t> CursorFrame::argb() const {
    std::vector<std::uint32_t> values;
    values.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* row = image.pixel(0, top + y).data();
        for (int x = 0; x < width; ++x, row += 4)
            values.push_back(std::uint32_t{row[3]} << 24 | std::uint32_t{row[0]} << 16 |
                             std::uint32_t{row[1]} << 8 | row[2]);
    }
    return values;
}

std::shared_ptr<const CursorPicture> CursorPicture::of(const RegisteredCursor& cursor) {
    const auto usableSide = [](double side) { return side >= 1 && side <= kLongestSide; };
    if (cursor.images.empty() || cursor.frameCount < 1) return nullptr;
    const double density = cursor.pixelsPerPoint;
    const Size size = {std::round(cursor.size.width * density), std::round(cursor.size.height * density)};
    if (!usableSide(size.width) || !usableSide(size.height)) return nullptr;
    const auto pixels = static_cast<std::uint64_t>(size.width) * static_cast<std::uint64_t>(size.height);
    if (cursor.frameCount > kMostPixels / pixels) return nullptr;

    CursorFrame frame{cursor.images.front()};
    frame.width = static_cast<int>(size.width);
    frame.height = static_cast<int>(size.height);
    frame.hotspotX = roundedAndClamped(cursor.hotspot.x * density, frame.width);
    frame.hotspotY = roundedAndClamped(cursor.hotspot.y * density, frame.height);
    frame.delay = delayOf(cursor.frameDuration);

    std::vector<CursorFrame> frames;
    if (cursor.images.size() > 1 && cursor.images.size() == cursor.frameCount) {
        for (const auto& image : cursor.images) {
            if (image.width() < frame.width || image.height() < frame.height) return nullptr;
            frame.image = image;
            frames.push_back(frame);
        }
        return of(std::move(frames));
    }
    const auto rows = static_cast<std::uint64_t>(frame.image.height());
    const auto held = rows / static_cast<std::uint64_t>(frame.height);
    if (frame.image.width() < frame.width || held < cursor.frameCount) return nullptr;
    for (std::uint64_t i = 0; i < cursor.frameCount; ++i) {
        frame.top = static_cast<int>(i) * frame.height;
        frames.push_back(frame);
    }
    return of(std::move(frames));
}

std::shared_ptr<const CursorPicture> CursorPicture::of(std::vector<CursorFrame> frames) {
    if (frames.empty()) return nullptr;
    for (auto& frame : frames) {
        if (frame.width < 1 || frame.width > kLongestSide) return nullptr;
        if (frame.height < 1 || frame.height > kLongestSide) return nullptr;
        frame.hotspotX = std::clamp(frame.hotspotX, 0, frame.width - 1);
        frame.hotspotY = std::clamp(frame.hotspotY, 0, frame.height - 1);
        frame.delay = std::clamp(frame.delay, kShortestDelay, kLongestDelay);
    }
    return std::shared_ptr<const CursorPicture>(new CursorPicture(std::move(frames)));
}

std::span<const Fingerprint> CursorPicture::fingerprints() const {
    std::call_once(fingerprinted_, [this] {
        for (const auto& frame : frames_)
            fingerprints_.push_back(fingerprintOf(static_cast<std::uint32_t>(frame.width),
                                                  static_cast<std::uint32_t>(frame.height),
                                                  static_cast<std::uint32_t>(frame.hotspotX),
                                                  static_cast<std::uint32_t>(frame.hotspotY), frame.argb()));
    });
    return fingerprints_;
}

bool CursorPicture::shows(Fingerprint fingerprint) const {
    const auto own = fingerprints();
    return std::find(own.begin(), own.end(), fingerprint) != own.end();
}

bool CursorPicture::equals(const CursorPicture& other) const {
    if (this == &other) return true;
    if (frames_.size() != other.frames_.size()) return false;
    for (std::size_t i = 0; i < frames_.size(); ++i) {
        const auto& a = frames_[i];
        const auto& b = other.frames_[i];
        if (a.width != b.width || a.height != b.height || a.hotspotX != b.hotspotX ||
            a.hotspotY != b.hotspotY)
            return false;
        if (isAnimated() && a.delay != b.delay) return false;
        if (!samePixels(a, b)) return false;
    }
    return true;
}

std::optional<RegisteredCursor> recordOf(const std::string& identifier, const CursorPicture& picture,
                                         double pixelsPerPoint) {
    const auto& frames = picture.frames();
    const auto& first = frames.front();
    const auto rowBytes = static_cast<std::size_t>(first.width) * 4;
    const auto count = static_cast<std::int64_t>(frames.size());
    auto strip = Bitmap::create(first.width, first.height * count, [&](std::span<std::uint8_t> bytes) {
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
        auto* at = bytes.data();
        for (const auto& frame : frames) {
            const auto used = static_cast<std::size_t>(std::min(frame.width, first.width)) * 4;
            for (int y = 0; y < first.height; ++y, at += rowBytes)
                if (y < frame.height) std::copy_n(frame.image.pixel(0, frame.top + y).data(), used, at);
        }
    });
    if (!strip) return std::nullopt;
    double delays = 0;
    if (picture.isAnimated())
        for (const auto& frame : frames) delays += frame.delay;
    RegisteredCursor record;
    record.identifier = identifier;
    record.images = {std::move(*strip)};
    record.size = {first.width / pixelsPerPoint, first.height / pixelsPerPoint};
    record.hotspot = {first.hotspotX / pixelsPerPoint, first.hotspotY / pixelsPerPoint};
    record.frameCount = frames.size();
    record.frameDuration = delays / static_cast<double>(frames.size()) / 1000;
    return record;
}

bool samePicture(const PicturePtr& a, const PicturePtr& b) {
    if (!a || !b) return a == b;
    return a->equals(*b);
}

}  // namespace pintle::x11
