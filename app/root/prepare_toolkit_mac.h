// What is set up before the toolkit's application object is made, and what of it child processes must not
// see. Used by the root.
#pragma once

#include <memory>

#include "platform/main_queue.h"
#include "platform/process_runner.h"

namespace pintle {

/// While it is set the toolkit leaves this process where it is: else it brings it to the front when it has
/// started, at login too. Read by the toolkit again at the end of the start, so it must stay until the
/// program ends.
inline constexpr const char* kStayInBackground = "QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM";

/// A runner whose child processes do not inherit that. `queue` must outlive it.
std::unique_ptr<ProcessRunner> makeRunnerForForeignPrograms(MainQueue& queue);

}  // namespace pintle
