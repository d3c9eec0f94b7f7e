#pragma once

#import <AppKit/NSColor.h>

#pragma clang assume_nonnull begin

typedef NS_OPTIONS(NSUInteger, NSGradientDrawingOptions) {
  NSGradientDrawsBeforeStartingLocation = 1 << 0,
  NSGradientDrawsAfterEndingLocation = 1 << 1,
};

@interface NSGradient : NSObject <NSCopying>
- (nullable instancetype)initWithColors:(NSArray<NSColor*>*)colors
                            atLocations:(nullable const CGFloat*)locations
                             colorSpace:(NSColorSpace*)space;
- (void)drawFromPoint:(NSPoint)start toPoint:(NSPoint)end options:(NSGradientDrawingOptions)options;
- (void)drawFromCenter:(NSPoint)startCenter
                radius:(CGFloat)startRadius
              toCenter:(NSPoint)endCenter
                radius:(CGFloat)endRadius
               options:(NSGradientDrawingOptions)options;
@end

#pragma clang assume_nonnull end
