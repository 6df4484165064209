// One alert of AppKit, without Objective-C. Main thread only.
#pragma once

#include "platform/alerts.h"

namespace pintle {

/// Shows the alert in front of everything and waits for the answer in a loop of its own, in which the main
/// queue goes on. Returns AppKit's response: 1000 for the first button, one more for each further one.
long runNativeAlert(const Alert& alert);

}  // namespace pintle
