#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSUInteger, NSWindingRule) {
  NSWindingRuleNonZero = 0,
  NSWindingRuleEvenOdd = 1,
};

@interface NSBezierPath : NSObject <NSCopying>
+ (NSBezierPath*)bezierPath;
- (void)moveToPoint:(NSPoint)point;
- (void)lineToPoint:(NSPoint)point;
- (void)curveToPoint:(NSPoint)end controlPoint1:(NSPoint)first controlPoint2:(NSPoint)second;
- (void)closePath;
- (void)appendBezierPath:(NSBezierPath*)path;
- (void)appendBezierPathWithRect:(NSRect)rect;
@property NSWindingRule windingRule;
- (void)fill;
/// What is drawn afterwards shows only within the path, and within earlier clips.
- (void)addClip;
@end

#pragma clang assume_nonnull end
