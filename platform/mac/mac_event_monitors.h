// AppKit's event monitors. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/event_monitors.h"

namespace pintle {

std::unique_ptr<EventMonitors> makeMacEventMonitors();

}  // namespace pintle
