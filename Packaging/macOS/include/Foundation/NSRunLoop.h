#pragma once

#import <Foundation/NSObjCRuntime.h>

#pragma clang assume_nonnull begin

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop* mainRunLoop;
/// Runs it in a later turn, in the default mode alone.
- (void)performBlock:(void (^)(void))block;
@end

@interface NSObject (NSDelayedPerforming)
/// The run loop of this thread performs it, in its default mode.
- (void)performSelector:(SEL)selector withObject:(nullable id)object afterDelay:(double)seconds;
@end

#pragma clang assume_nonnull end
