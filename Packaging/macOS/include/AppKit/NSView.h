#pragma once

#import <AppKit/NSAccessibility.h>
#import <AppKit/NSResponder.h>

@class NSCoder, NSWindow;

#pragma clang assume_nonnull begin

typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
  NSViewWidthSizable = 2,
  NSViewHeightSizable = 16,
};

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_DESIGNATED_INITIALIZER;
@property NSRect frame;
@property(readonly) NSRect bounds;
@property NSAutoresizingMaskOptions autoresizingMask;
@property BOOL needsDisplay;
@property(nullable, readonly, unsafe_unretained) NSWindow* window;
@property(nullable, copy) NSString* toolTip;
- (void)addSubview:(NSView*)view;
/// The frame that puts the view's visible part there.
- (NSRect)frameForAlignmentRect:(NSRect)rect;
- (void)removeFromSuperview;
- (void)drawRect:(NSRect)dirtyRect;
@end

@interface NSView (NSAccessibility)
- (void)setAccessibilityElement:(BOOL)isElement;
- (void)setAccessibilityRole:(nullable NSAccessibilityRole)role;
- (void)setAccessibilityLabel:(nullable NSString*)label;
- (nullable NSString*)accessibilityLabel;
- (nullable id)accessibilityValue;
- (BOOL)accessibilityPerformPress;
@end

#pragma clang assume_nonnull end
