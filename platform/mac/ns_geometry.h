// Points and rectangles between C++ and AppKit, which count alike. For the Objective-C++ files of this
// folder.
#pragma once

#import <Foundation/Foundation.h>

#include "base/geometry.h"

namespace pintle {

inline Rect fromNsRect(NSRect rect) {
    return {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}};
}

inline NSRect nsRect(const Rect& rect) {
    return NSMakeRect(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

}  // namespace pintle
