// The popover: a window without a frame, above the others and in no task bar, around the user interface's
// view. Made by the root. Main thread only.
#pragma once

#include <memory>

#include "platform/appearance.h"
#include "platform/popover.h"
#include "platform/qt/shell/shell_desktop.h"
#include "platform/qt/shell/shell_views.h"

namespace pintle {

/// All must outlive the popovers. From here on the views are notified when the appearance changes whether
/// windows blend.
std::unique_ptr<Popovers> makeQtPopovers(ShellViews& views, Appearance& appearance,
                                         const ShellDesktop& desktop);

}  // namespace pintle
