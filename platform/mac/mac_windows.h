// The program's windows, around views of the user interface. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/mac/native_views.h"
#include "platform/windows.h"

namespace pintle {

/// The view of a window is asked for when the window is made. `views` must outlive the windows.
std::unique_ptr<Windows> makeMacWindows(NativeViews& views);

}  // namespace pintle
