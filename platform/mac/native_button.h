// The button of a status item of this backend. For the Objective-C++ files of this folder; main thread only.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/status_item.h"

namespace pintle {

/// Nil for an item without a button. `item` must be of this backend.
NSStatusBarButton* nativeButton(const StatusItem& item);

}  // namespace pintle
