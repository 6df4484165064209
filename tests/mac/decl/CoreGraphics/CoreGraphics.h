// What the backend uses of Core Graphics, declared in our own words for checks on other systems.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

typedef double CGFloat;
typedef struct CGPoint {
    CGFloat x;
    CGFloat y;
} CGPoint;
typedef struct CGSize {
    CGFloat width;
    CGFloat height;
} CGSize;
typedef struct CGRect {
    CGPoint origin;
    CGSize size;
} CGRect;
static inline CGPoint CGPointMake(CGFloat x, CGFloat y) { return CGPoint{x, y}; }
static inline CGSize CGSizeMake(CGFloat width, CGFloat height) { return CGSize{width, height}; }
static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return CGRect{CGPoint{x, y}, CGSize{width, height}};
}

enum CGError : int32_t { kCGErrorSuccess = 0 };

typedef struct CGImage* CGImageRef;
typedef struct CGColorSpace* CGColorSpaceRef;
typedef struct CGDataProvider* CGDataProviderRef;
typedef struct CGContext* CGContextRef;
typedef uint32_t CGBitmapInfo;
enum CGImageAlphaInfo : uint32_t { kCGImageAlphaPremultipliedLast = 1 };
enum CGColorRenderingIntent : int32_t { kCGRenderingIntentDefault = 0 };
enum CGInterpolationQuality : int32_t { kCGInterpolationHigh = 3 };
enum CGBlendMode : int32_t { kCGBlendModeCopy = 17 };
typedef void (*CGDataProviderReleaseDataCallback)(void* info, const void* data, size_t size);

PINTLE_EXTERN CGColorSpaceRef CGColorSpaceCreateDeviceRGB(void);
PINTLE_EXTERN CGDataProviderRef CGDataProviderCreateWithData(void* info, const void* data, size_t size,
                                                             CGDataProviderReleaseDataCallback release);
PINTLE_EXTERN CFTypeID CGImageGetTypeID(void);
PINTLE_EXTERN CGImageRef CGImageCreate(size_t width, size_t height, size_t bitsPerComponent,
                                       size_t bitsPerPixel, size_t bytesPerRow, CGColorSpaceRef space,
                                       CGBitmapInfo bitmapInfo, CGDataProviderRef provider,
                                       const CGFloat* decode, bool shouldInterpolate,
                                       CGColorRenderingIntent intent);
PINTLE_EXTERN size_t CGImageGetWidth(CGImageRef image);
PINTLE_EXTERN size_t CGImageGetHeight(CGImageRef image);
PINTLE_EXTERN CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height,
                                                 size_t bitsPerComponent, size_t bytesPerRow,
                                                 CGColorSpaceRef space, uint32_t bitmapInfo);
PINTLE_EXTERN void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality);
PINTLE_EXTERN void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image);

typedef uint32_t CGDirectDisplayID;
typedef uint32_t CGDisplayChangeSummaryFlags;
typedef void (*CGDisplayReconfigurationCallBack)(CGDirectDisplayID display, CGDisplayChangeSummaryFlags flags,
                                                 void* userInfo);
PINTLE_EXTERN CGDirectDisplayID CGMainDisplayID(void);
PINTLE_EXTERN CGRect CGDisplayBounds(CGDirectDisplayID display);
PINTLE_EXTERN CGError CGDisplayHideCursor(CGDirectDisplayID display);
PINTLE_EXTERN CGError CGDisplayShowCursor(CGDirectDisplayID display);
PINTLE_EXTERN CGError CGDisplayRegisterReconfigurationCallback(CGDisplayReconfigurationCallBack callback,
                                                               void* userInfo);
PINTLE_EXTERN CGError CGDisplayRemoveReconfigurationCallback(CGDisplayReconfigurationCallBack callback,
                                                             void* userInfo);

typedef int32_t CGWindowLevel;
enum CGWindowLevelKey : int32_t { kCGMaximumWindowLevelKey = 14 };
PINTLE_EXTERN CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key);
typedef uint32_t CGWindowID;
typedef uint32_t CGWindowListOption;
enum : CGWindowListOption {
    kCGWindowListOptionOnScreenOnly = 1,
    kCGWindowListExcludeDesktopElements = 16,
};
enum : CGWindowID { kCGNullWindowID = 0 };
PINTLE_EXTERN CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow);
PINTLE_EXTERN bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect);
PINTLE_EXTERN const CFStringRef kCGWindowOwnerName;
PINTLE_EXTERN const CFStringRef kCGWindowLayer;
PINTLE_EXTERN const CFStringRef kCGWindowBounds;
