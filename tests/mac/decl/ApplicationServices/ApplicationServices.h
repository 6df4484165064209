// What the backend uses of Application Services, declared in our own words for checks on other systems.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

typedef const struct __AXUIElement* AXUIElementRef;
enum AXError : int32_t { kAXErrorSuccess = 0 };
PINTLE_EXTERN Boolean AXIsProcessTrusted(void);
PINTLE_EXTERN AXUIElementRef AXUIElementCreateSystemWide(void);
PINTLE_EXTERN AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds);
PINTLE_EXTERN AXError AXUIElementCopyElementAtPosition(AXUIElementRef application, float x, float y,
                                                       AXUIElementRef* element);
PINTLE_EXTERN AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                                    CFTypeRef* value);
