// Watches a file descriptor of a desktop connection on the toolkit's event loop. Used by the backends that
// speak a protocol of their own. Main thread only.
#pragma once

#include <functional>

#include "platform/main_queue.h"

namespace pintle {

/// Runs `readable` as work of `queue` (so that the end of the turn follows it) whenever `fd` has something to
/// read or was closed by the other side, until the handle ends. The handler must read until nothing is left.
/// `fd` stays the caller's; end the handle before closing it and before the queue goes.
Subscription watchReadable(MainQueue& queue, int fd, std::function<void()> readable);

}  // namespace pintle
