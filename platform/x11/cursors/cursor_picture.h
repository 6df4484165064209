// What one X cursor shows: the frames of a picture with whole-pixel hotspots and delays in milliseconds, and
// the fingerprints by which a picture is recognised when the server shows it. Immutable; any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/registered_cursor.h"

namespace pintle::x11 {

/// Of an image as the server reports it: size, hotspot and pixels.
using Fingerprint = std::uint64_t;

/// `pixels`: width × height values 0xAARRGGBB, premultiplied, rows from the top.
Fingerprint fingerprintOf(std::uint32_t width, std::uint32_t height, std::uint32_t hotspotX,
                          std::uint32_t hotspotY, std::span<const std::uint32_t> pixels);

struct CursorFrame {
    /// Holds the frame's rows [top, top + height), each `width` pixels from the left edge.
    Bitmap image;
    int top = 0;
    int width = 0;
    int height = 0;
    /// Pixels from the frame's top-left corner, inside the frame.
    int hotspotX = 0;
    int hotspotY = 0;
    /// Milliseconds; without meaning for a still cursor.
    std::uint32_t delay = 0;

    /// width × height values 0xAARRGGBB, rows from the top.
    std::vector<std::uint32_t> argb() const;
};

class CursorPicture {
  public:
    /// Absent (null) when the record does not describe `frameCount` frames of `size`: no image, a side below
    /// one pixel or above 2048, more pixels in all frames than one of that side has, fewer rows than the
    /// frames need.
    static std::shared_ptr<const CursorPicture> of(const RegisteredCursor& cursor);
    /// Hotspots are clamped and delays bounded. Absent without a frame or when a side is out of bounds.
    static std::shared_ptr<const CursorPicture> of(std::vector<CursorFrame> frames);

    const std::vector<CursorFrame>& frames() const { return frames_; }
    bool isAnimated() const { return frames_.size() > 1; }
    /// Whether one of the frames has this fingerprint.
    bool shows(Fingerprint fingerprint) const;
    /// One of each frame, made when they are first asked for: most pictures are never compared with a shown
    /// one.
    std::span<const Fingerprint> fingerprints() const;
    /// Same pixels, hotspots and delays.
    bool equals(const CursorPicture& other) const;

  private:
    explicit CursorPicture(std::vector<CursorFrame> frames) : frames_(std::move(frames)) {}

    std::vector<CursorFrame> frames_;
    mutable std::once_flag fingerprinted_;
    mutable std::vector<Fingerprint> fingerprints_;
};

using PicturePtr = std::shared_ptr<const CursorPicture>;

/// The picture as the window server's interface has it: all frames in one strip, frame 0 on top, each as
/// large as the first, and measured at so many pixels a point. Absent when the memory cannot be had.
std::optional<RegisteredCursor> recordOf(const std::string& identifier, const CursorPicture& picture,
                                         double pixelsPerPoint = 1);

/// Both absent, or both there and equal.
bool samePicture(const PicturePtr& a, const PicturePtr& b);

}  // namespace pintle::x11
