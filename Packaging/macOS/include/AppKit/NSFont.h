#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef CGFloat NSFontWeight;
BRIVANE_EXPORT const NSFontWeight NSFontWeightRegular;
BRIVANE_EXPORT const NSFontWeight NSFontWeightMedium;
BRIVANE_EXPORT const NSFontWeight NSFontWeightSemibold;

@interface NSFont : NSObject <NSCopying>
+ (NSFont*)systemFontOfSize:(CGFloat)size;
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
/// 0: the size that menus have.
+ (NSFont*)menuFontOfSize:(CGFloat)size;
@end

#pragma clang assume_nonnull end
