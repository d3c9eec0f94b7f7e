#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSString* NSAppearanceName;
BRIVANE_EXPORT const NSAppearanceName NSAppearanceNameAqua;
BRIVANE_EXPORT const NSAppearanceName NSAppearanceNameDarkAqua;

@interface NSAppearance : NSObject
- (nullable NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray<NSAppearanceName>*)names;
@end

#pragma clang assume_nonnull end
