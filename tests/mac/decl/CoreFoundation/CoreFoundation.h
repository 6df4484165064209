// What the backend uses of Core Foundation, declared in our own words for checks on other systems. Never
// compiled into the program: on the desktop itself the system's own headers are taken.
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#define PINTLE_EXTERN extern "C"

typedef const void* CFTypeRef;
typedef signed long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef int SInt32;
typedef unsigned int UInt32;
typedef double CFAbsoluteTime;
typedef double CFTimeInterval;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFData* CFDataRef;
typedef struct __CFData* CFMutableDataRef;
typedef const struct __CFDate* CFDateRef;
typedef const struct __CFArray* CFArrayRef;
typedef struct __CFArray* CFMutableArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFError* CFErrorRef;
typedef struct __CFBundle* CFBundleRef;
typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;
typedef struct __CFRunLoopTimer* CFRunLoopTimerRef;
typedef struct __CFNotificationCenter* CFNotificationCenterRef;
typedef CFTypeRef CFPropertyListRef;
typedef CFStringRef CFRunLoopMode;
typedef CFStringRef CFNotificationName;
typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;
static inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return CFRange{location, length}; }

PINTLE_EXTERN const CFAllocatorRef kCFAllocatorDefault;
PINTLE_EXTERN CFTypeRef CFRetain(CFTypeRef cf);
PINTLE_EXTERN void CFRelease(CFTypeRef cf);
PINTLE_EXTERN CFTypeID CFGetTypeID(CFTypeRef cf);

typedef UInt32 CFStringEncoding;
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };
PINTLE_EXTERN CFTypeID CFStringGetTypeID(void);
PINTLE_EXTERN CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                                  CFStringEncoding encoding, Boolean isExternal);
PINTLE_EXTERN CFIndex CFStringGetLength(CFStringRef string);
PINTLE_EXTERN CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                                       UInt8 lossByte, Boolean isExternal, UInt8* buffer, CFIndex capacity,
                                       CFIndex* used);

enum CFNumberType : CFIndex { kCFNumberSInt64Type = 4, kCFNumberFloat64Type = 6, kCFNumberDoubleType = 13 };
PINTLE_EXTERN CFTypeID CFNumberGetTypeID(void);
PINTLE_EXTERN CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);
PINTLE_EXTERN Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
PINTLE_EXTERN Boolean CFNumberIsFloatType(CFNumberRef number);

PINTLE_EXTERN const CFBooleanRef kCFBooleanTrue;
PINTLE_EXTERN const CFBooleanRef kCFBooleanFalse;
PINTLE_EXTERN CFTypeID CFBooleanGetTypeID(void);
PINTLE_EXTERN Boolean CFBooleanGetValue(CFBooleanRef boolean);

PINTLE_EXTERN CFTypeID CFDataGetTypeID(void);
PINTLE_EXTERN CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
PINTLE_EXTERN CFMutableDataRef CFDataCreateMutable(CFAllocatorRef allocator, CFIndex capacity);
PINTLE_EXTERN const UInt8* CFDataGetBytePtr(CFDataRef data);
PINTLE_EXTERN CFIndex CFDataGetLength(CFDataRef data);

PINTLE_EXTERN CFTypeID CFDateGetTypeID(void);
PINTLE_EXTERN CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime at);
PINTLE_EXTERN CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
PINTLE_EXTERN CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);

typedef struct {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef, const void*);
    void (*release)(CFAllocatorRef, const void*);
    CFStringRef (*copyDescription)(const void*);
    Boolean (*equal)(const void*, const void*);
} CFArrayCallBacks;
PINTLE_EXTERN const CFArrayCallBacks kCFTypeArrayCallBacks;
PINTLE_EXTERN CFTypeID CFArrayGetTypeID(void);
PINTLE_EXTERN CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                     const CFArrayCallBacks* callBacks);
PINTLE_EXTERN CFIndex CFArrayGetCount(CFArrayRef array);
PINTLE_EXTERN const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
PINTLE_EXTERN void CFArrayAppendValue(CFMutableArrayRef array, const void* value);

typedef struct {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef, const void*);
    void (*release)(CFAllocatorRef, const void*);
    CFStringRef (*copyDescription)(const void*);
    Boolean (*equal)(const void*, const void*);
    unsigned long (*hash)(const void*);
} CFDictionaryKeyCallBacks;
typedef CFArrayCallBacks CFDictionaryValueCallBacks;
PINTLE_EXTERN const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
PINTLE_EXTERN const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
PINTLE_EXTERN CFTypeID CFDictionaryGetTypeID(void);
PINTLE_EXTERN CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                               const CFDictionaryKeyCallBacks* keys,
                                                               const CFDictionaryValueCallBacks* values);
PINTLE_EXTERN CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
PINTLE_EXTERN const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
PINTLE_EXTERN void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                                const void** values);
PINTLE_EXTERN void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key,
                                        const void* value);

enum CFPropertyListFormat : CFIndex {
    kCFPropertyListXMLFormat_v1_0 = 100,
    kCFPropertyListBinaryFormat_v1_0 = 200,
};
enum : CFOptionFlags { kCFPropertyListImmutable = 0 };
PINTLE_EXTERN CFDataRef CFPropertyListCreateData(CFAllocatorRef allocator, CFPropertyListRef list,
                                                 CFPropertyListFormat format, CFOptionFlags options,
                                                 CFErrorRef* error);
PINTLE_EXTERN CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef allocator, CFDataRef data,
                                                             CFOptionFlags options,
                                                             CFPropertyListFormat* format, CFErrorRef* error);

PINTLE_EXTERN const CFStringRef kCFPreferencesCurrentUser;
PINTLE_EXTERN const CFStringRef kCFPreferencesAnyHost;
PINTLE_EXTERN CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef application,
                                                       CFStringRef user, CFStringRef host);
PINTLE_EXTERN void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef application,
                                         CFStringRef user, CFStringRef host);
PINTLE_EXTERN void CFPreferencesSetMultiple(CFDictionaryRef set, CFArrayRef removed, CFStringRef application,
                                            CFStringRef user, CFStringRef host);
PINTLE_EXTERN CFArrayRef CFPreferencesCopyKeyList(CFStringRef application, CFStringRef user,
                                                  CFStringRef host);
PINTLE_EXTERN Boolean CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host);

PINTLE_EXTERN CFTypeID CFURLGetTypeID(void);
PINTLE_EXTERN Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase,
                                                       UInt8* buffer, CFIndex capacity);

PINTLE_EXTERN CFBundleRef CFBundleGetMainBundle(void);
PINTLE_EXTERN CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
PINTLE_EXTERN CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
PINTLE_EXTERN CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
PINTLE_EXTERN CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);

typedef struct {
    CFIndex version;
    void* info;
    const void* (*retain)(const void* info);
    void (*release)(const void* info);
    CFStringRef (*copyDescription)(const void* info);
    Boolean (*equal)(const void* info1, const void* info2);
    unsigned long (*hash)(const void* info);
    void (*schedule)(void* info, CFRunLoopRef loop, CFRunLoopMode mode);
    void (*cancel)(void* info, CFRunLoopRef loop, CFRunLoopMode mode);
    void (*perform)(void* info);
} CFRunLoopSourceContext;
typedef struct {
    CFIndex version;
    void* info;
    const void* (*retain)(const void* info);
    void (*release)(const void* info);
    CFStringRef (*copyDescription)(const void* info);
} CFRunLoopTimerContext;
typedef void (*CFRunLoopTimerCallBack)(CFRunLoopTimerRef timer, void* info);
enum CFRunLoopRunResult : SInt32 { kCFRunLoopRunFinished = 1 };
PINTLE_EXTERN const CFRunLoopMode kCFRunLoopDefaultMode;
PINTLE_EXTERN const CFRunLoopMode kCFRunLoopCommonModes;
PINTLE_EXTERN CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                                    Boolean returnAfterSourceHandled);
PINTLE_EXTERN CFRunLoopRef CFRunLoopGetMain(void);
PINTLE_EXTERN void CFRunLoopWakeUp(CFRunLoopRef loop);
PINTLE_EXTERN CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef allocator, CFIndex order,
                                                       CFRunLoopSourceContext* context);
PINTLE_EXTERN void CFRunLoopSourceSignal(CFRunLoopSourceRef source);
PINTLE_EXTERN void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source);
PINTLE_EXTERN void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
PINTLE_EXTERN CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef allocator, CFAbsoluteTime fireDate,
                                                     CFTimeInterval interval, CFOptionFlags flags,
                                                     CFIndex order, CFRunLoopTimerCallBack callout,
                                                     CFRunLoopTimerContext* context);
PINTLE_EXTERN void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);
PINTLE_EXTERN void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode);

typedef void (*CFNotificationCallback)(CFNotificationCenterRef center, void* observer,
                                       CFNotificationName name, const void* object, CFDictionaryRef userInfo);
enum CFNotificationSuspensionBehavior : CFIndex { CFNotificationSuspensionBehaviorDeliverImmediately = 4 };
enum : CFOptionFlags { kCFNotificationDeliverImmediately = 1 };
PINTLE_EXTERN CFNotificationCenterRef CFNotificationCenterGetDistributedCenter(void);
PINTLE_EXTERN void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                                   CFNotificationCallback callBack, CFStringRef name,
                                                   const void* object,
                                                   CFNotificationSuspensionBehavior behavior);
PINTLE_EXTERN void CFNotificationCenterRemoveObserver(CFNotificationCenterRef center, const void* observer,
                                                      CFNotificationName name, const void* object);
PINTLE_EXTERN void CFNotificationCenterPostNotificationWithOptions(CFNotificationCenterRef center,
                                                                   CFNotificationName name,
                                                                   const void* object,
                                                                   CFDictionaryRef userInfo,
                                                                   CFOptionFlags options);
