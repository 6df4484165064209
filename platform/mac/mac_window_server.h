// The window server's cursor registry by its private functions. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/window_server.h"

namespace pintle {

/// Each function is looked up at the first question about it. flush() does nothing: a registration takes
/// effect by itself.
std::unique_ptr<WindowServer> makeMacWindowServer();

}  // namespace pintle
