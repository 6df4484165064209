// Hints about this process on Linux. Made by the root. Any thread.
#pragma once

#include <memory>

#include "platform/process_hints.h"

namespace pintle {

/// Activities have no effect: nothing on this desktop throttles a process for being in the background.
/// Free memory goes back through malloc_trim.
std::unique_ptr<ProcessHints> makeGlibcProcessHints();

}  // namespace pintle
