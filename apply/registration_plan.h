// What a theme registers with the window server: a pure function from its cursors to records. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"
#include "cursor/preloaded_cursor.h"
#include "platform/registered_cursor.h"

namespace pintle {

/// One registration, kept so that it can be repeated without any image work.
struct RegisteredImage {
    /// Desktop cursor identifier, for example "com.apple.coregraphics.Arrow".
    std::string identifier;
    /// The single frame, or the vertical strip of all frames.
    Bitmap image;
    /// Of one frame, in points.
    Size size;
    /// In points from the top-left corner of a frame.
    Point hotspot;
    std::uint64_t frameCount = 1;
    /// Seconds per frame; 0 for a still cursor.
    double duration = 0;
    /// Of the image, each way.
    double pixelsPerPoint = 1;

    RegisteredCursor toRegisteredCursor() const;
    friend bool operator==(const RegisteredImage&, const RegisteredImage&) = default;
};

struct RegistrationPlan {
    /// Of the theme's arrow.
    Size arrowSize;
    /// In the order of the identifier table; identifiers without a candidate are left out.
    std::vector<RegisteredImage> images;
};

/// Absent when the theme has no arrow: it is refused whole.
std::optional<RegistrationPlan> planRegistration(const std::vector<PreloadedCursor>& cursors);

/// The cursor that stands for a theme's arrow; null when it has none. Valid as long as `cursors`.
const PreloadedCursor* arrowOf(const std::vector<PreloadedCursor>& cursors);

/// The frames that are sent, see sentFrames().
std::vector<Bitmap> framesToSend(const FrameList& frames);

/// The seconds per frame that are sent for an animated cursor.
double secondsToSend(const PreloadedCursor& cursor);

}  // namespace pintle
