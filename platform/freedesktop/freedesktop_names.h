// The names of Linux desktops, after those that every desktop shares.
#pragma once

#include "platform/desktop_names.h"

namespace pintle {

/// Applications are named by the class of their windows, as Workspace and WindowList name them.
DesktopNames makeFreedesktopNames();

}  // namespace pintle
