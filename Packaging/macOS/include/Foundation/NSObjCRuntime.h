#pragma once

#include <CoreFoundation/CoreFoundation.h>
#import <objc/NSObject.h>
#import <objc/objc.h>

#ifndef NS_ENUM
#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
#endif
#ifndef NS_OPTIONS
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : type
#endif
#ifndef NS_DESIGNATED_INITIALIZER
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#endif
#define BRIVANE_EXPORT extern "C"

typedef double NSTimeInterval;

@protocol NSCopying
- (nonnull id)copyWithZone:(nullable struct _NSZone*)zone;
@end
