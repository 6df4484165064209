// The desktop's 17 standard cursors, called roles: names, order and the desktop cursor each stands for.
// Plain data; any thread.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "platform/desktop_cursor.h"

namespace pintle {

enum class CursorType {
    arrow,
    iBeam,
    crosshair,
    closedHand,
    openHand,
    pointingHand,
    resizeLeft,
    resizeRight,
    resizeLeftRight,
    resizeUp,
    resizeDown,
    resizeUpDown,
    disappearingItem,
    operationNotAllowed,
    dragLink,
    dragCopy,
    contextualMenu,
};

/// Every role in declaration order.
inline constexpr std::array<CursorType, 17> kCursorTypes = {
    CursorType::arrow,
    CursorType::iBeam,
    CursorType::crosshair,
    CursorType::closedHand,
    CursorType::openHand,
    CursorType::pointingHand,
    CursorType::resizeLeft,
    CursorType::resizeRight,
    CursorType::resizeLeftRight,
    CursorType::resizeUp,
    CursorType::resizeDown,
    CursorType::resizeUpDown,
    CursorType::disappearingItem,
    CursorType::operationNotAllowed,
    CursorType::dragLink,
    CursorType::dragCopy,
    CursorType::contextualMenu,
};

/// The case's name, by which role maps are keyed.
std::string_view rawValue(CursorType type);

/// Absent when no role has that raw value. Case-sensitive.
std::optional<CursorType> cursorTypeFromRawValue(std::string_view rawValue);

/// The desktop's own cursor of the role.
StandardCursor standardCursorOf(CursorType type);

}  // namespace pintle
