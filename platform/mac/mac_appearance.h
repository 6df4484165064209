// Light and dark, and the user's wishes for less movement, more contrast and no translucency. Made by the
// root after the toolkit's application object; main thread only.
#pragma once

#include <memory>

#include "platform/appearance.h"
#include "platform/main_queue.h"

namespace pintle {

std::unique_ptr<Appearance> makeMacAppearance(MainQueue& queue);

}  // namespace pintle
