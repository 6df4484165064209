// What the backend uses of User Notifications, declared in our own words for checks on other systems.
#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface UNNotificationContent : NSObject
@end
@interface UNMutableNotificationContent : UNNotificationContent
@property(copy) NSString* title;
@property(copy) NSString* body;
@end
@class UNNotificationTrigger;
@interface UNNotificationRequest : NSObject
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@end
typedef NSUInteger UNAuthorizationOptions;
enum : UNAuthorizationOptions { UNAuthorizationOptionAlert = 1 << 2 };
@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter*)currentNotificationCenter;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* _Nullable error))completion;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable error))completion;
@end

#pragma clang assume_nonnull end
