#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

BRIVANE_EXPORT const NSAttributedStringKey NSFontAttributeName;
BRIVANE_EXPORT const NSAttributedStringKey NSForegroundColorAttributeName;
BRIVANE_EXPORT const NSAttributedStringKey NSParagraphStyleAttributeName;

typedef NS_ENUM(NSInteger, NSTextAlignment) {
  NSTextAlignmentLeft = 0,
#if defined(__x86_64__)
  NSTextAlignmentRight = 1,
  NSTextAlignmentCenter = 2,
#else
  NSTextAlignmentCenter = 1,
  NSTextAlignmentRight = 2,
#endif
  NSTextAlignmentNatural = 4,
};

typedef NS_ENUM(NSUInteger, NSLineBreakMode) {
  NSLineBreakByTruncatingTail = 4,
};

@interface NSParagraphStyle : NSObject <NSCopying>
@end

@interface NSMutableParagraphStyle : NSParagraphStyle
@property NSTextAlignment alignment;
@property NSLineBreakMode lineBreakMode;
@end

@interface NSString (NSStringDrawing)
- (NSSize)sizeWithAttributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
- (void)drawInRect:(NSRect)rect
    withAttributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
@end

#pragma clang assume_nonnull end
