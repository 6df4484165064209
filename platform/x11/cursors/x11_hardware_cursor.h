// The cursor of this process on X11. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/hardware_cursor.h"

namespace pintle {

/// Cursor objects are records. Making one current has no meaning of its own here: the server shows the cursor
/// of the window under the pointer, and the program's windows get theirs through the toolkit. So `set` calls
/// the replacement once it has been exchanged, and the desktop's own implementation does nothing.
std::unique_ptr<HardwareCursor> makeHardwareCursor();

}  // namespace pintle
