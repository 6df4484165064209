// Bitmaps as Core Graphics images and back. Any thread.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <optional>

#include "base/bitmap.h"
#include "platform/mac/cf.h"

namespace pintle {

/// Device RGB, premultiplied alpha last; shares the bitmap's pixels. Null when it cannot be made.
CfRef<CGImageRef> toCgImage(const Bitmap& bitmap);
/// The image drawn into `width` × `height` pixels; absent when there is no memory for them.
std::optional<Bitmap> fromCgImage(CGImageRef image, std::size_t width, std::size_t height);
/// The image at its own size in pixels.
std::optional<Bitmap> fromCgImage(CGImageRef image);

}  // namespace pintle
