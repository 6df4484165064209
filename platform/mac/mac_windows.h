// The program's windows, around views of the skin. Made by the root; main thread only.
#pragma once

#include <functional>
#include <memory>

#include "platform/mac/mac_popovers.h"
#include "platform/windows.h"

namespace pintle {

/// `content` makes the view of a window when the window is made; null: the window cannot be made.
std::unique_ptr<Windows> makeMacWindows(std::function<NativeView(WindowContent)> content);

}  // namespace pintle
