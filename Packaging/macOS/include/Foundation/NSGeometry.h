#pragma once

#import <Foundation/NSObjCRuntime.h>

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
  NSPoint point;
  point.x = x;
  point.y = y;
  return point;
}

static inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
  NSSize size;
  size.width = width;
  size.height = height;
  return size;
}

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  NSRect rect;
  rect.origin = NSMakePoint(x, y);
  rect.size = NSMakeSize(width, height);
  return rect;
}
