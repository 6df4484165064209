// Screens and the mouse. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/displays.h"

namespace pintle {

std::unique_ptr<Displays> makeMacDisplays();

}  // namespace pintle
