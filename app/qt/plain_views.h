// Views without a skin: plain areas that can be closed by Escape, and alerts that Return answers. For
// programs that run the shell without its looks. Main thread only.
#pragma once

#include <memory>

#include "platform/qt/shell/shell_views.h"

namespace pintle {

std::unique_ptr<ShellViews> makePlainViews();

}  // namespace pintle
