// The desktop's numbers of mouse events as the interfaces name them. Pure; for the files of this folder.
#pragma once

#include "platform/event_monitors.h"
#include "platform/status_item.h"

namespace pintle {

inline constexpr unsigned long kNativeLeftMouseUp = 2;
inline constexpr unsigned long kNativeRightMouseDown = 3;
inline constexpr unsigned long kNativeRightMouseUp = 4;

constexpr StatusItemEventType statusItemEventType(unsigned long native) {
    if (native == kNativeLeftMouseUp) return StatusItemEventType::leftMouseUp;
    if (native == kNativeRightMouseUp) return StatusItemEventType::rightMouseUp;
    return StatusItemEventType::other;
}

constexpr GlobalMouseDown::Button pressedButton(unsigned long native) {
    return native == kNativeRightMouseDown ? GlobalMouseDown::Button::right : GlobalMouseDown::Button::left;
}

static_assert(statusItemEventType(1) == StatusItemEventType::other);
static_assert(statusItemEventType(2) == StatusItemEventType::leftMouseUp);
static_assert(statusItemEventType(3) == StatusItemEventType::other);
static_assert(statusItemEventType(4) == StatusItemEventType::rightMouseUp);
static_assert(pressedButton(1) == GlobalMouseDown::Button::left);
static_assert(pressedButton(3) == GlobalMouseDown::Button::right);

}  // namespace pintle
