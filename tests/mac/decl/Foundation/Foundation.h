// What the backend uses of Foundation, declared in our own words for checks on other systems.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <objc/NSObject.h>

#define PINTLE_SINCE(version) __attribute__((availability(macos, introduced = version)))
#define PINTLE_DEPRECATED(from, to) __attribute__((availability(macos, introduced = from, deprecated = to)))

#pragma clang assume_nonnull begin

typedef CGRect NSRect;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef double NSTimeInterval;
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) { return CGRectMake(x, y, w, h); }
static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) { return CGPointMake(x, y); }
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) { return CGSizeMake(width, height); }

@class NSString;

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)count;
@end

@interface NSObject (PintleDescription)
@property(readonly, copy) NSString* description;
@end

@interface NSString : NSObject
+ (nullable instancetype)stringWithUTF8String:(const char*)bytes;
@property(nullable, readonly) const char* UTF8String;
- (BOOL)isEqualToString:(NSString*)other;
@end
/// The class behind a literal.
@interface NSConstantString : NSString
@end

@interface NSNumber : NSObject
@property(readonly) unsigned int unsignedIntValue;
@end

@interface NSArray<__covariant Element> : NSObject <NSFastEnumeration>
+ (instancetype)arrayWithObjects:(const Element _Nonnull[_Nullable])objects count:(NSUInteger)count;
@property(readonly) NSUInteger count;
@property(nullable, readonly) Element firstObject;
- (Element)objectAtIndexedSubscript:(NSUInteger)index;
@end

@interface NSDictionary<__covariant Key, __covariant Value> : NSObject
- (nullable Value)objectForKeyedSubscript:(Key)key;
@end

typedef NSString* NSKeyValueChangeKey;
typedef NSUInteger NSKeyValueObservingOptions;
@interface NSObject (PintleKeyValueObserving)
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(nullable void*)context;
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath;
- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context;
@end

@interface NSError : NSObject
@property(readonly, copy) NSString* domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString*)text;
@property(nullable, readonly, copy) NSString* path;
@end

@interface NSUUID : NSObject
+ (instancetype)UUID;
@property(readonly, copy) NSString* UUIDString;
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
- (void)addOperationWithBlock:(void (^)(void))block;
@end

@interface NSNotification : NSObject
@property(nullable, readonly, copy) NSDictionary* userInfo;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSString*)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

typedef uint64_t NSActivityOptions;
enum : NSActivityOptions { NSActivityUserInitiated = 0x00FFFFFF };
@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

enum NSSearchPathDirectory : NSUInteger { NSApplicationSupportDirectory = 14 };
typedef NSUInteger NSSearchPathDomainMask;
enum : NSSearchPathDomainMask { NSUserDomainMask = 1 };
@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domains;
@end
PINTLE_EXTERN NSString* NSHomeDirectory(void);
PINTLE_EXTERN NSString* NSTemporaryDirectory(void);

#pragma clang assume_nonnull end
