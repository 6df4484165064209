// The user interface's views as native ones, for a desktop whose own windows hold them. Made by the root;
// main thread only.
#pragma once

#include <memory>

#include "platform/mac/native_views.h"
#include "platform/qt/shell/shell_views.h"

namespace pintle {

/// `views` must outlive the result.
std::unique_ptr<NativeViews> makeNativeViews(ShellViews& views);

}  // namespace pintle
