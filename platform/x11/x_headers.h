// The one place where headers of the old X library are included: they define macros with names that this
// program uses for its own things. Include this, never the headers themselves. The xcb headers are clean.
#pragma once

#include <X11/Xcursor/Xcursor.h>

#undef Always
#undef Bool
#undef CursorShape
#undef False
#undef None
#undef Status
#undef Success
#undef True
