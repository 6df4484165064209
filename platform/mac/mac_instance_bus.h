// Other copies of this program and the messages between them. Made by the root in its first stage; main
// thread only.
#pragma once

#include <memory>
#include <string>

#include "platform/instance_bus.h"
#include "platform/main_queue.h"

namespace pintle {

/// A copy that observes a message receives its own posts of it too: the messages name no sender.
std::unique_ptr<InstanceBus> makeMacInstanceBus(const std::string& bundleIdentifier, MainQueue& queue);

}  // namespace pintle
