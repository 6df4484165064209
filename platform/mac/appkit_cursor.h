// AppKit's cursor objects without Objective-C. Used by the two cursor backends of this folder; main thread
// only.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/geometry.h"
#include "platform/desktop_cursor.h"
#include "platform/mac/cf.h"

namespace pintle {

/// A cursor object, kept alive. Never null.
using CursorObject = std::shared_ptr<const void>;

CursorObject makeCursorObject(CGImageRef image, Size size, Point hotspot);
CursorObject standardCursorObject(StandardCursor which);
/// `set` as any code of this process calls it.
void sendSet(const CursorObject& cursor);
/// The desktop's own `set`, whatever has been exchanged.
void sendOriginalSet(const CursorObject& cursor);
/// Exchanges `set` with a method that calls `replacement` with its receiver. Call once. False, and nothing
/// changes, where either method does not exist.
bool exchangeCursorSet(std::function<void(const CursorObject& receiver)> replacement);

struct CursorReading {
    CfRef<CGImageRef> image;
    /// Points.
    Size size;
    /// Points from the top-left corner.
    Point hotspot;
};

/// What the desktop would show now; absent when it does not report it.
std::optional<CursorReading> readCurrentSystemCursor();
/// The standard cursors of this version of the desktop by X11 name, in the order of comparison.
std::vector<std::pair<std::string, CursorReading>> readStandardCursors();

}  // namespace pintle
