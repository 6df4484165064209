// Overlay windows: borderless, click-through, above everything. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/overlay_surfaces.h"

namespace pintle {

std::unique_ptr<OverlaySurfaces> makeMacOverlaySurfaces();

}  // namespace pintle
