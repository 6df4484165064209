// The process as AppKit sees it, without Objective-C. Used by the application backend; main thread only.
#pragma once

#include <string>

#include "platform/application.h"

namespace pintle {

void setNativeActivationPolicy(ActivationPolicy policy);
/// Whichever program is active.
void activateNatively();
void openNatively(const std::string& url);
/// Asks the user first whether notifications may come.
void notifyNatively(const std::string& title, const std::string& text);
/// Soon, from the main run loop.
void terminateNatively();

}  // namespace pintle
