// The notification centre between the processes of one user. Main thread only.
#pragma once

#include <functional>
#include <string>

#include "base/subscription.h"

namespace pintle {

/// Sends `name` with no object and no user info, delivered at once, also to processes that are suspended.
void postDistributed(const std::string& name);
/// Calls `received` on the main thread at each such message, whoever sent it.
Subscription observeDistributed(const std::string& name, std::function<void()> received);

}  // namespace pintle
