// Other copies of this program, by a well-known name on the user's session bus. Made by the root in its first
// stage, after the application object of the toolkit. Main thread only.
#pragma once

#include <memory>
#include <string>

#include "platform/background_tasks.h"
#include "platform/instance_bus.h"
#include "platform/main_queue.h"

namespace pintle {

/// The first question asks for `name` and keeps it until the object ends; the name's owner is the copy that
/// runs. Without a bus, or with one that does not answer within a few seconds, the answer is no. A bus is
/// never started for this. After that question a bus that was missing or went away is looked for from time to
/// time and joined again; of two copies that meet there the one that started first keeps the name. `queue`
/// and `background` must outlive the object.
std::unique_ptr<InstanceBus> makeDbusInstanceBus(const std::string& name, MainQueue& queue,
                                                 BackgroundTasks& background);

}  // namespace pintle
