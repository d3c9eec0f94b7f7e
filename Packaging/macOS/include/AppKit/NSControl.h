#pragma once

#import <AppKit/NSFont.h>
#import <AppKit/NSImage.h>
#import <AppKit/NSView.h>

#pragma clang assume_nonnull begin

typedef NSInteger NSControlStateValue;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;

typedef NS_ENUM(NSUInteger, NSControlSize) {
  NSControlSizeRegular = 0,
  NSControlSizeSmall = 1,
};

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
/// Sends its action at each step of a drag.
@property(getter=isContinuous) BOOL continuous;
@property double doubleValue;
@property(copy) NSString* stringValue;
@property(nullable, strong) NSFont* font;
@end

@interface NSSlider : NSControl
+ (instancetype)sliderWithValue:(double)value
                       minValue:(double)minimum
                       maxValue:(double)maximum
                         target:(nullable id)target
                         action:(nullable SEL)action;
@property double minValue;
@property double maxValue;
@end

@interface NSTextField : NSControl
+ (instancetype)labelWithString:(NSString*)text;
@end

typedef NS_ENUM(NSUInteger, NSBezelStyle) {
  NSBezelStyleRounded = 1,
};

@interface NSButton : NSControl
+ (instancetype)buttonWithTitle:(NSString*)title
                         target:(nullable id)target
                         action:(nullable SEL)action;
@property(copy) NSString* title;
@property(nullable, strong) NSImage* image;
@property NSBezelStyle bezelStyle;
@end

typedef NS_ENUM(NSUInteger, NSProgressIndicatorStyle) {
  NSProgressIndicatorStyleSpinning = 1,
};

@interface NSProgressIndicator : NSView
@property NSProgressIndicatorStyle style;
@property NSControlSize controlSize;
@property(getter=isIndeterminate) BOOL indeterminate;
- (void)startAnimation:(nullable id)sender;
@end

#pragma clang assume_nonnull end
