// Accessibility of other applications' elements. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/accessibility.h"

namespace pintle {

/// An application that does not answer is given up after a twentieth of a second.
std::unique_ptr<Accessibility> makeMacAccessibility();

}  // namespace pintle
