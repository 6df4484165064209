// A menu of AppKit from a menu as a value. For the Objective-C++ files of this folder; main thread only.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/menu.h"

namespace pintle {

NSMenu* makeNativeMenu(const Menu& menu);

}  // namespace pintle
