// Cursor objects of this process and the exchange of their `set`. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/hardware_cursor.h"

namespace pintle {

/// The exchange of `set` belongs to the process: one object at a time may have exchanged it.
std::unique_ptr<HardwareCursor> makeMacHardwareCursor();

}  // namespace pintle
