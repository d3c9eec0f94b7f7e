#pragma once

#include <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

@class NSGraphicsContext;

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSUInteger, NSEventType) {
  NSEventTypeLeftMouseDown = 1,
  NSEventTypeKeyDown = 10,
  NSEventTypeSystemDefined = 14,
  NSEventTypeApplicationDefined = 15,
};

typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
  NSEventModifierFlagShift = 1 << 17,
  NSEventModifierFlagControl = 1 << 18,
  NSEventModifierFlagOption = 1 << 19,
  NSEventModifierFlagCommand = 1 << 20,
};

@interface NSEvent : NSObject <NSCopying>
@property(readonly) NSEventType type;
@property(readonly) NSEventModifierFlags modifierFlags;
/// Of key events only.
@property(readonly) unsigned short keyCode;
/// Of system- and application-defined events only, as the two after it.
@property(readonly) short subtype;
@property(readonly) NSInteger data1;
@property(readonly) NSInteger data2;
@property(class, readonly) NSPoint mouseLocation;
/// A bit for each.
@property(class, readonly) NSUInteger pressedMouseButtons;
@property(class, readonly) NSEventModifierFlags modifierFlags;
+ (nullable NSEvent*)eventWithCGEvent:(CGEventRef)event;
+ (nullable NSEvent*)otherEventWithType:(NSEventType)type
                               location:(NSPoint)location
                          modifierFlags:(NSEventModifierFlags)flags
                              timestamp:(NSTimeInterval)time
                           windowNumber:(NSInteger)windowNumber
                                context:(nullable NSGraphicsContext*)context
                                subtype:(short)subtype
                                  data1:(NSInteger)data1
                                  data2:(NSInteger)data2;
@end

#pragma clang assume_nonnull end
