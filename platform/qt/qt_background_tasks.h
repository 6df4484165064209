// Background work on a few threads of this process. Made and destroyed by the root on the main thread.
#pragma once

#include <memory>
#include <optional>

#include "platform/background_tasks.h"

namespace pintle {

/// The destructor drops work that has not begun and waits for what runs. Utility work never takes the last
/// free thread, so that what the user waits for begins at once. Work must not let an exception out.
/// `threads` is at least 2; absent: as many as the machine has processors, from 2 to 8.
std::unique_ptr<BackgroundTasks> makeQtBackgroundTasks(std::optional<unsigned> threads = std::nullopt);

}  // namespace pintle
