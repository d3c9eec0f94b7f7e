#pragma once

#import <AppKit/NSColor.h>
#import <AppKit/NSFont.h>

#pragma clang assume_nonnull begin

/// Needs macOS 12.
@interface NSImageSymbolConfiguration : NSObject <NSCopying>
+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight;
+ (instancetype)configurationWithPaletteColors:(NSArray<NSColor*>*)colors;
- (instancetype)configurationByApplyingConfiguration:(NSImageSymbolConfiguration*)other;
@end

@interface NSImage : NSObject <NSCopying>
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description;
/// The handler draws the picture whenever and as large as it is needed.
+ (NSImage*)imageWithSize:(NSSize)size
                  flipped:(BOOL)isFlipped
           drawingHandler:(BOOL (^)(NSRect rect))handler;
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
@property NSSize size;
- (void)drawInRect:(NSRect)rect;
@end

#pragma clang assume_nonnull end
