#pragma once

#import <Foundation/Foundation.h>

#include <string>

#include "BrivaneCore/Support/Geometry.h"

// Converts texts and rectangles to AppKit's and back. AppKit's origin is the lower left, too, y
// upwards.

namespace brivane {

/// Empty for invalid UTF-8.
inline NSString* nsString(const std::string& text) {
  NSString* const string = [NSString stringWithUTF8String:text.c_str()];
  return string == nil ? @"" : string;
}

/// Empty for nil.
inline std::string utf8Text(NSString* string) {
  const char* const text = string.UTF8String;
  return text == nullptr ? std::string() : std::string(text);
}

inline NSRect nsRect(const Rect& rect) {
  return NSMakeRect(rect.x, rect.y, rect.width, rect.height);
}

inline Rect rectOf(const NSRect& rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

}  // namespace brivane
