// The process as AppKit sees it. Made by the root; main thread only.
#pragma once

#include <functional>
#include <memory>

#include "base/subscription.h"
#include "platform/application.h"

namespace pintle {

/// `observeQuit` subscribes to the toolkit's own end of the program: a toolkit that runs the application
/// object may end its loop instead of letting AppKit end the process.
std::unique_ptr<Application> makeMacApplication(
    const std::function<Subscription(std::function<void()>)>& observeQuit);

}  // namespace pintle
