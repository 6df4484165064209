// The cursor of this process: cursor objects, which of them is current, and the place where code of this
// process makes one current. Main thread only.
#pragma once

#include <functional>

#include "platform/desktop_cursor.h"

namespace pintle {

class HardwareCursor {
  public:
    using SetOperation = std::function<void(const DesktopCursor&)>;
    virtual ~HardwareCursor() = default;

    /// A cursor object from an image and a hotspot in points from its top-left corner (not rounded).
    virtual DesktopCursor makeCursor(const Bitmap& image, Point hotspot) = 0;
    virtual DesktopCursor standardCursor(StandardCursor which) = 0;
    /// Makes a cursor current the way any code of this process does: through the replacement once `set` has
    /// been exchanged.
    virtual void set(const DesktopCursor& cursor) = 0;
    /// The desktop's own implementation of `set`, whatever has been exchanged.
    virtual void setOriginal(const DesktopCursor& cursor) = 0;
    /// Replaces `set` by `replacement` for the life of the process. False, and nothing changes, where either
    /// operation does not exist.
    virtual bool exchangeSet(SetOperation replacement) = 0;
};

}  // namespace pintle
