#pragma once

#import <Foundation/NSString.h>

#include <cstdint>

#pragma clang assume_nonnull begin

typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
  NSActivityIdleSystemSleepDisabled = 1ULL << 20,
  NSActivityUserInitiated = 0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled,
  NSActivityUserInitiatedAllowingIdleSystemSleep = NSActivityUserInitiated &
                                                   ~NSActivityIdleSystemSleepDisabled,
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
/// The activity goes on until what this gives is ended, or nobody keeps it any more.
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

#pragma clang assume_nonnull end
