// Child processes through the toolkit. Made by the root; main thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/main_queue.h"
#include "platform/process_runner.h"

namespace pintle {

/// Runs what `substitutes` names instead of the requested executables. A child is killed when this program
/// dies, however it dies. No child inherits the variables of the environment that `withheld` names.
/// The queue must outlive the runner.
std::unique_ptr<ProcessRunner> makeQtProcessRunner(MainQueue& queue, ProcessSubstitutes substitutes,
                                                   std::vector<std::string> withheld = {});

}  // namespace pintle
