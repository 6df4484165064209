// Hints to the system about this process. Any thread.
#pragma once

#include <string>

#include "base/subscription.h"

namespace pintle {

class ProcessHints {
  public:
    virtual ~ProcessHints() = default;
    /// Declares a user-initiated activity until the handle ends, so that it is not throttled.
    virtual Subscription beginActivity(const std::string& reason) = 0;
    /// Asks the allocator to give free pages back to the system.
    virtual void releaseFreeMemory() = 0;
};

}  // namespace pintle
