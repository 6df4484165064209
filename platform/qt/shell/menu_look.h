// The look of a menu that the program draws itself: the font and the colours of its other surfaces, light or
// dark as the desktop wants it. Main thread only.
#pragma once

#include <QMenu>

#include "platform/appearance.h"

namespace pintle::shell {

/// Not for menus that the desktop draws: those have its look.
void dress(QMenu& menu, const DesktopLook& look);

}  // namespace pintle::shell
