// The windows on screen by Core Graphics. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/window_list.h"

namespace pintle {

std::unique_ptr<WindowList> makeMacWindowList();

}  // namespace pintle
