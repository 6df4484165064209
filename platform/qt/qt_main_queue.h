// The main queue on the toolkit's event loop. Made once by the root on the main thread, after the application
// object of the toolkit and before anything that posts; destroyed before that object.
#pragma once

#include <memory>

#include "platform/main_queue.h"

namespace pintle {

/// One turn is one batch of posted work, or the timers that are due at one moment. Timers keep to their grid
/// (start + n × interval): a tick that the thread missed is left out, not made up for. Ticks come up to about
/// a millisecond late, never early. Work left when the queue ends is dropped.
std::unique_ptr<MainQueue> makeQtMainQueue();

}  // namespace pintle
