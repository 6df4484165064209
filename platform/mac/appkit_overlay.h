// A window of AppKit that shows one picture above everything, without Objective-C. Used by the overlay's
// backend; main thread only; points, y up.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <memory>

#include "base/geometry.h"

namespace pintle {

// AppKit's bits of a window's collection behaviour.
inline constexpr unsigned long kCanJoinAllSpaces = 1UL << 0;
inline constexpr unsigned long kStationary = 1UL << 4;
inline constexpr unsigned long kIgnoresCycle = 1UL << 6;
inline constexpr unsigned long kFullScreenAuxiliary = 1UL << 8;

struct NativeOverlaySpec {
    Size size;
    int level = 0;
    /// Of the bits above.
    unsigned long collectionBehavior = 0;
    /// Whether the window goes when the user hides the program.
    bool canHide = true;
};

/// Without a frame, a shadow or a background; takes neither clicks nor keys. Ending it closes the window.
class NativeOverlayWindow {
  public:
    virtual ~NativeOverlayWindow() = default;
    virtual bool isVisible() const = 0;
    virtual void setSize(Size size) = 0;
    virtual void setOrigin(Point origin) = 0;
    virtual void setAlpha(double alpha) = 0;
    /// Null shows nothing; `size` in points.
    virtual void setImage(CGImageRef image, Size size) = 0;
    virtual void orderFrontRegardless() = 0;
};

/// Invisible at first: not on the screen, and its alpha 0.
std::unique_ptr<NativeOverlayWindow> makeNativeOverlayWindow(const NativeOverlaySpec& spec);

}  // namespace pintle
