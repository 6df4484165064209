// The unified log and standard output. Any thread.
#pragma once

#include <memory>

#include "platform/log.h"

namespace pintle {

std::unique_ptr<Log> makeMacLog();

}  // namespace pintle
