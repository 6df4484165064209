// The drawn pointer: Core Graphics displays, the window server's private functions and AppKit's cursors. Made
// by the root; main thread only.
#pragma once

#include <memory>

#include "platform/pointer.h"

namespace pintle {

std::unique_ptr<Pointer> makeMacPointer();

/// Undoes one hiding on the main display. For signal handlers: calls nothing but Core Graphics.
void showPointerOnMainDisplay();

}  // namespace pintle
