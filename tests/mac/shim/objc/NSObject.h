// The root class for checks on other systems.
#pragma once

#include <objc/objc.h>

typedef unsigned long NSUInteger;
typedef long NSInteger;
typedef struct _NSZone NSZone;

@protocol NSObject
- (BOOL)isEqual:(id)object;
- (BOOL)isKindOfClass:(Class)kind;
- (BOOL)respondsToSelector:(SEL)selector;
- (instancetype)self;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
+ (Class)class;
- (instancetype)init;
- (id)copy;
@end
