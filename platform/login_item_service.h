// The desktop's own list of programs that start at login, as far as it concerns this program. Main thread
// only.
#pragma once

#include "base/result.h"

namespace pintle {

/// The numbers are the platform's and stand in a log line.
enum class LoginItemStatus { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

class LoginItemService {
  public:
    virtual ~LoginItemService() = default;
    /// Records this program, at the place where it lies now, to be started at login.
    virtual Status registerItem() = 0;
    virtual Status unregisterItem() = 0;
    virtual LoginItemStatus status() = 0;
};

}  // namespace pintle
