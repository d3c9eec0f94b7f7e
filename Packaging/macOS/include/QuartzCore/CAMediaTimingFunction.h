#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSString* CAMediaTimingFunctionName;
BRIVANE_EXPORT const CAMediaTimingFunctionName kCAMediaTimingFunctionLinear;
BRIVANE_EXPORT const CAMediaTimingFunctionName kCAMediaTimingFunctionEaseIn;

@interface CAMediaTimingFunction : NSObject
+ (instancetype)functionWithName:(CAMediaTimingFunctionName)name;
@end

#pragma clang assume_nonnull end
