// What the backend uses of Service Management, declared in our own words for checks on other systems.
#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

enum SMAppServiceStatus : NSInteger {
    SMAppServiceStatusNotRegistered,
    SMAppServiceStatusEnabled,
    SMAppServiceStatusRequiresApproval,
    SMAppServiceStatusNotFound,
};
PINTLE_SINCE(13.0)
@interface SMAppService : NSObject
@property(class, readonly) SMAppService* mainAppService;
@property(readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError* _Nullable* _Nullable)error;
- (BOOL)unregisterAndReturnError:(NSError* _Nullable* _Nullable)error;
@end

#pragma clang assume_nonnull end
