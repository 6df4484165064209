// The popover: a window without a frame, above the others and in no task bar, around the user interface's
// view. Made by the root. Main thread only.
#pragma once

#include <memory>

#include "platform/appearance.h"
#include "platform/popover.h"
#include "platform/qt/shell/shell_desktop.h"
#include "platform/qt/shell/shell_views.h"

namespace pintle {

/// All must outlive the popovers. The appearance tells whether windows blend; from here on the views are told
/// too.
std::unique_ptr<Popovers> makeQtPopovers(ShellViews& views, Appearance& appearance,
                                         const ShellDesktop& desktop);

}  // namespace pintle
