// Items in the menu bar. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/status_item.h"

namespace pintle {

std::unique_ptr<StatusBar> makeMacStatusBar();

}  // namespace pintle
