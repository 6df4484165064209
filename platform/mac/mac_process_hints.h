// Hints about this process. Made by the root; any thread.
#pragma once

#include <memory>

#include "platform/process_hints.h"

namespace pintle {

std::unique_ptr<ProcessHints> makeMacProcessHints();

}  // namespace pintle
