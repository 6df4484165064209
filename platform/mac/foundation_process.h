// What Foundation says of this process, without Objective-C. Any thread.
#pragma once

#include <functional>
#include <string>

#include "base/subscription.h"
#include "platform/bundle.h"

namespace pintle {

/// Calls `work` and lets go of what the frameworks handed out in it.
void inAutoreleasePool(const std::function<void()>& work);
/// A user-initiated activity until the handle ends.
Subscription beginProcessActivity(const std::string& reason);
/// The user's folders; the first application-support folder of the user's domain.
UserDirectories readUserDirectories();

}  // namespace pintle
