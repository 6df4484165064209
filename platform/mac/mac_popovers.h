// Panels that hang from a status item of this backend. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/mac/native_views.h"
#include "platform/popover.h"

namespace pintle {

/// The view is asked for at the first showing. `views` must outlive the popovers.
std::unique_ptr<Popovers> makeMacPopovers(NativeViews& views);

}  // namespace pintle
