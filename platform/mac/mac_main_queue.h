// The main actor on the main thread's run loop, in its common modes: work goes on while a menu is tracked, a
// window dragged or an alert waits. Made by the root on the main thread, in its first stage.
#pragma once

#include <memory>

#include "platform/main_queue.h"

namespace pintle {

/// Whoever runs the main run loop runs the queue; it needs no loop of its own.
std::unique_ptr<MainQueue> makeMacMainQueue();

}  // namespace pintle
