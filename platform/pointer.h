// The pointer that the desktop draws: hiding and showing it, what it looks like at this moment, and what
// watches it. Each function may be missing by itself and then answers absent. Main thread only; asked 120
// times a second.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"
#include "platform/displays.h"

namespace pintle {

struct SystemCursor {
    Bitmap image;
    /// Points from the image's top-left corner.
    Point hotspot;
    /// The X11 name, with the desktop's private aliases resolved, where the platform knows it.
    std::optional<std::string> name;
};

class Pointer {
  public:
    virtual ~Pointer() = default;

    /// Undoes one hide(). Showing more often than was hidden does no harm.
    virtual void show(DisplayId display) = 0;
    virtual void hide(DisplayId display) = 0;
    /// Lets a hidden or changed cursor stay so while another application is frontmost. False where missing.
    virtual bool setsCursorInBackground() = 0;

    /// Changes whenever the cursor that the desktop would show changes. Absent where missing.
    virtual std::optional<std::int64_t> currentCursorSeed() = 0;
    /// The cursor that the desktop would show now, also while it is hidden.
    virtual std::optional<SystemCursor> currentSystemCursor() = 0;
    /// The desktop's own standard cursors by X11 name, in the order in which they are compared.
    virtual std::vector<std::pair<std::string, Bitmap>> standardCursors() = 0;

    /// Whether somebody watches or records the screen. Absent where missing.
    virtual std::optional<bool> isScreenWatcherPresent() = 0;
};

}  // namespace pintle
