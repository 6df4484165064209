// Panels that hang from a status item of this backend. Made by the root; main thread only.
#pragma once

#include <functional>
#include <memory>

#include "platform/popover.h"

namespace pintle {

/// A view of the skin: an NSView that lives as long as the program.
using NativeView = void*;

/// `content` makes the view at the first showing.
std::unique_ptr<Popovers> makeMacPopovers(std::function<NativeView()> content);

}  // namespace pintle
