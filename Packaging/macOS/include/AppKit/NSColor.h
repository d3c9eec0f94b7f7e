#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSColorSpace : NSObject
@property(class, strong, readonly) NSColorSpace* sRGBColorSpace;
@end

@interface NSColor : NSObject <NSCopying>
+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha;
@property(class, strong, readonly) NSColor* clearColor;
@property(class, strong, readonly) NSColor* labelColor;
@property(class, strong, readonly) NSColor* secondaryLabelColor;
@property(class, strong, readonly) NSColor* tertiaryLabelColor;
@property(class, strong, readonly) NSColor* controlAccentColor;
@property(class, strong, readonly) NSColor* separatorColor;
@property(class, strong, readonly) NSColor* controlBackgroundColor;
/// What the colour is at this moment, in the appearance that is drawn in.
- (nullable NSColor*)colorUsingColorSpace:(NSColorSpace*)space;
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;
@property(readonly) CGFloat alphaComponent;
- (void)setFill;
@end

#pragma clang assume_nonnull end
