// Holds our own declarations of AppKit and Foundation, and of the one class of QuartzCore, against
// the real ones: those that compare.py reads, and here what it can't.
#import <AppKit/AppKit.h>
#import <QuartzCore/CAMediaTimingFunction.h>

#include <cstddef>

#include "Tests/Mac/AbiCheck/AbiCheck.h"

// A message that a class doesn't declare is no more than a warning when its receiver is an id.
#pragma clang diagnostic error "-Wobjc-method-access"

namespace {

using abi::any;
using abi::argument;
using abi::valueOf;

// What arrays and dictionaries are of.
using KeyType = NSString*;
using ObjectType = NSString*;

#include "AppKit.inc"

IS_TYPE(BOOL, bool);
IS_TYPE(NSInteger, long);
IS_TYPE(NSUInteger, unsigned long);
#if defined(__x86_64__)
IS_VALUE(NSTextAlignmentRight, 1);
IS_VALUE(NSTextAlignmentCenter, 2);
#else
IS_VALUE(NSTextAlignmentCenter, 1);
IS_VALUE(NSTextAlignmentRight, 2);
#endif
GIVES(([any<NSWindow>() animator]), NSWindow*);
GIVES(([NSArray arrayWithObjects:valueOf<const id __strong*>() count:argument<NSUInteger>()]),
      NSArray*);
GIVES(([NSDictionary dictionaryWithObjects:valueOf<const id __strong*>()
                                   forKeys:valueOf<const id<NSCopying> __strong*>()
                                     count:argument<NSUInteger>()]),
      NSDictionary*);

}  // namespace
