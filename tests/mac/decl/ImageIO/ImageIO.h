// What the backend uses of Image I/O, declared in our own words for checks on other systems.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

typedef struct CGImageSource* CGImageSourceRef;
typedef struct CGImageDestination* CGImageDestinationRef;
enum CGImageSourceStatus : int32_t { kCGImageStatusComplete = 0 };
PINTLE_EXTERN CGImageSourceRef CGImageSourceCreateWithData(CFDataRef data, CFDictionaryRef options);
PINTLE_EXTERN CGImageRef CGImageSourceCreateImageAtIndex(CGImageSourceRef source, size_t index,
                                                         CFDictionaryRef options);
PINTLE_EXTERN CGImageSourceStatus CGImageSourceGetStatusAtIndex(CGImageSourceRef source, size_t index);
PINTLE_EXTERN CGImageDestinationRef CGImageDestinationCreateWithData(CFMutableDataRef data, CFStringRef type,
                                                                     size_t count, CFDictionaryRef options);
PINTLE_EXTERN void CGImageDestinationAddImage(CGImageDestinationRef destination, CGImageRef image,
                                              CFDictionaryRef properties);
PINTLE_EXTERN bool CGImageDestinationFinalize(CGImageDestinationRef destination);
