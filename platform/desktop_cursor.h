// Cursor objects of this process. Equality is identity: two objects made from equal images are different.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "base/bitmap.h"
#include "base/geometry.h"

namespace pintle {

/// The desktop's standard cursors, in the order in which a cursor is compared with them.
enum class StandardCursor {
    arrow,
    iBeam,
    pointingHand,
    crosshair,
    openHand,
    closedHand,
    resizeLeftRight,
    resizeUpDown,
    resizeLeft,
    resizeRight,
    resizeUp,
    resizeDown,
    operationNotAllowed,
    contextualMenu,
    dragCopy,
    dragLink,
    disappearingItem,
};

inline constexpr std::array<StandardCursor, 17> kStandardCursors = {
    StandardCursor::arrow,
    StandardCursor::iBeam,
    StandardCursor::pointingHand,
    StandardCursor::crosshair,
    StandardCursor::openHand,
    StandardCursor::closedHand,
    StandardCursor::resizeLeftRight,
    StandardCursor::resizeUpDown,
    StandardCursor::resizeLeft,
    StandardCursor::resizeRight,
    StandardCursor::resizeUp,
    StandardCursor::resizeDown,
    StandardCursor::operationNotAllowed,
    StandardCursor::contextualMenu,
    StandardCursor::dragCopy,
    StandardCursor::dragLink,
    StandardCursor::disappearingItem,
};

class DesktopCursor {
  public:
    /// What a backend keeps behind a cursor object.
    struct Object {
        virtual ~Object() = default;
    };

    explicit DesktopCursor(std::shared_ptr<const Object> object) : object_(std::move(object)) {}
    const Object& object() const { return *object_; }
    friend bool operator==(const DesktopCursor&, const DesktopCursor&) = default;

  private:
    std::shared_ptr<const Object> object_;
};

}  // namespace pintle
