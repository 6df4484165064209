// Accessibility through AT-SPI. An application that hangs keeps its answer to itself: the questions are asked
// on a thread of their own, with a short limit, and the main thread only ever takes the last answer.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/accessibility.h"

namespace pintle::overlay {

/// `rootPixelAt` answers the root window's pixel at a point; asked on the main thread. The service is first
/// reached for when somebody asks whether it may be asked.
std::unique_ptr<Accessibility> makeAtspiAccessibility(
    std::function<std::pair<int, int>(TopLeftPoint)> rootPixelAt);

}  // namespace pintle::overlay
