// Other copies of this program, by a well-known name on the user's session bus. Made by the root in its first
// stage, after the application object of the toolkit. Main thread only.
#pragma once

#include <memory>
#include <string>

#include "platform/instance_bus.h"

namespace pintle {

/// The first question asks for `name` and keeps it until the object ends; the name's owner is the copy that
/// runs. Without a bus, or with one that does not answer within a few seconds, the answer is no. A bus is
/// never started for this.
std::unique_ptr<InstanceBus> makeDbusInstanceBus(const std::string& name);

}  // namespace pintle
