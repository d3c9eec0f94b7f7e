// Holds our own declarations of Foundation, and of the one class of QuartzCore, against the real
// ones: every message with the types of what goes in and comes out. Compiled with the kit of a Mac,
// a line that isn't true there is an error; compiled elsewhere it holds our headers to the same.
#import <Foundation/Foundation.h>
#import <QuartzCore/CAMediaTimingFunction.h>

#include <cstddef>

#include "Tests/Mac/AbiCheck/AbiCheck.h"

// A message that a class doesn't declare is no more than a warning when its receiver is an id.
#pragma clang diagnostic error "-Wobjc-method-access"

namespace {

using abi::any;
using abi::Exactly;
using abi::valueOf;

// Numbers and geometry

IS_TYPE(BOOL, bool);
IS_TYPE(NSInteger, long);
IS_TYPE(NSUInteger, unsigned long);
IS_TYPE(NSTimeInterval, double);
IS_TYPE(NSPoint, CGPoint);
IS_TYPE(NSSize, CGSize);
IS_TYPE(NSRect, CGRect);
IS_FUNCTION(NSMakePoint, NSPoint (*)(CGFloat, CGFloat));
IS_FUNCTION(NSMakeSize, NSSize (*)(CGFloat, CGFloat));
IS_FUNCTION(NSMakeRect, NSRect (*)(CGFloat, CGFloat, CGFloat, CGFloat));

// Copying, and walking through what holds others

GIVES_OBJECT([valueOf<id<NSCopying>>() copyWithZone:nullptr], id);
IS_STRUCT(NSFastEnumerationState, 64);
HAS_FIELD(NSFastEnumerationState, state, 0, unsigned long);
static_assert(offsetof(NSFastEnumerationState, itemsPtr) == 8);
HAS_FIELD(NSFastEnumerationState, mutationsPtr, 16, unsigned long*);
HAS_FIELD(NSFastEnumerationState, extra, 24, unsigned long[5]);
GIVES([valueOf<id<NSFastEnumeration>>()
          countByEnumeratingWithState:valueOf<NSFastEnumerationState*>()
                              objects:valueOf<id __unsafe_unretained*>()
                                count:Exactly<NSUInteger>()],
      NSUInteger);

// Arrays and dictionaries

IS_SUBCLASS(NSArray, NSObject);
CONFORMS(NSArray, NSCopying);
CONFORMS(NSArray, NSFastEnumeration);
GIVES_OBJECT([NSArray<NSString*> array], NSArray<NSString*>*);
GIVES_OBJECT([NSArray arrayWithObjects:valueOf<const id __strong*>() count:Exactly<NSUInteger>()],
             NSArray*);
CAN_READ(NSArray, count, NSUInteger);
GIVES_OBJECT([any<NSArray<NSString*>>() objectAtIndexedSubscript:Exactly<NSUInteger>()], NSString*);
IS_SUBCLASS(NSMutableArray, NSArray);
GIVES([any<NSMutableArray<NSString*>>() addObject:any<NSString>()], void);
GIVES([any<NSMutableArray<NSString*>>() removeObject:any<NSString>()], void);
GIVES([any<NSMutableArray>() removeAllObjects], void);

IS_SUBCLASS(NSDictionary, NSObject);
CONFORMS(NSDictionary, NSCopying);
GIVES_OBJECT([NSDictionary dictionaryWithObjects:valueOf<const id __strong*>()
                                         forKeys:valueOf<const id<NSCopying> __strong*>()
                                           count:Exactly<NSUInteger>()],
             NSDictionary*);
CAN_READ(NSDictionary, count, NSUInteger);
GIVES_OBJECT([any<NSDictionary>() objectForKeyedSubscript:valueOf<id>()], id);

// Texts, addresses, numbers

IS_SUBCLASS(NSString, NSObject);
CONFORMS(NSString, NSCopying);
GIVES_OBJECT([NSString stringWithUTF8String:Exactly<const char*>()], NSString*);
CAN_READ(NSString, UTF8String, const char*);
CAN_READ(NSString, length, NSUInteger);
GIVES([any<NSString>() isEqualToString:any<NSString>()], BOOL);

IS_TYPE(NSAttributedStringKey, NSString*);
IS_SUBCLASS(NSAttributedString, NSObject);
CONFORMS(NSAttributedString, NSCopying);
using Attributes = NSDictionary<NSAttributedStringKey, id>;
GIVES_OBJECT([[NSAttributedString alloc] initWithString:any<NSString>()
                                             attributes:any<Attributes>()],
             NSAttributedString*);
CAN_READ_OBJECT(NSAttributedString, string, NSString*);

IS_SUBCLASS(NSURL, NSObject);
CONFORMS(NSURL, NSCopying);
GIVES_OBJECT([NSURL URLWithString:any<NSString>()], NSURL*);
CAN_READ_OBJECT(NSURL, absoluteString, NSString*);

IS_SUBCLASS(NSValue, NSObject);
CONFORMS(NSValue, NSCopying);
IS_SUBCLASS(NSNumber, NSValue);
GIVES_OBJECT([NSNumber numberWithInt:Exactly<int>()], NSNumber*);
GIVES_OBJECT([NSNumber numberWithUnsignedInt:Exactly<unsigned int>()], NSNumber*);
GIVES_OBJECT([NSNumber numberWithDouble:Exactly<double>()], NSNumber*);
CAN_READ(NSNumber, unsignedIntValue, unsigned int);
CAN_READ(NSNumber, doubleValue, double);

IS_SUBCLASS(NSAffineTransform, NSObject);
CONFORMS(NSAffineTransform, NSCopying);
GIVES_OBJECT([NSAffineTransform transform], NSAffineTransform*);
GIVES([any<NSAffineTransform>() scaleBy:Exactly<CGFloat>()], void);

// Announcements, and properties that are watched

IS_TYPE(NSNotificationName, NSString*);
IS_SUBCLASS(NSNotification, NSObject);
CONFORMS(NSNotification, NSCopying);
CAN_READ_OBJECT(NSNotification, name, NSNotificationName);
IS_SUBCLASS(NSOperationQueue, NSObject);
GIVES_OBJECT(NSOperationQueue.mainQueue, NSOperationQueue*);
IS_SUBCLASS(NSNotificationCenter, NSObject);
GIVES_OBJECT(NSNotificationCenter.defaultCenter, NSNotificationCenter*);
GIVES_OBJECT([any<NSNotificationCenter>() addObserverForName:valueOf<NSNotificationName>()
                                                      object:any<NSObject>()
                                                       queue:any<NSOperationQueue>()
                                                  usingBlock:valueOf<void (^)(NSNotification*)>()],
             id<NSObject>);
GIVES([any<NSNotificationCenter>() removeObserver:valueOf<id>()], void);

IS_TYPE(NSKeyValueChangeKey, NSString*);
IS_NUMBER(NSKeyValueObservingOptions, unsigned long);
IS_VALUE(NSKeyValueObservingOptionNew, 1);
using Change = NSDictionary<NSKeyValueChangeKey, id>;
GIVES([any<NSObject>() observeValueForKeyPath:any<NSString>()
                                     ofObject:valueOf<id>()
                                       change:any<Change>()
                                      context:valueOf<void*>()],
      void);
GIVES([any<NSObject>() addObserver:any<NSObject>()
                        forKeyPath:any<NSString>()
                           options:Exactly<NSKeyValueObservingOptions>()
                           context:valueOf<void*>()],
      void);
GIVES([any<NSObject>() removeObserver:any<NSObject>()
                           forKeyPath:any<NSString>()
                              context:valueOf<void*>()],
      void);

// Later in the run loop

GIVES([any<NSObject>() performSelector:Exactly<SEL>()
                            withObject:valueOf<id>()
                            afterDelay:Exactly<double>()],
      void);

// What the process is at

IS_NUMBER(NSActivityOptions, uint64_t);
IS_VALUE(NSActivityIdleSystemSleepDisabled, 0x100000);
IS_VALUE(NSActivityUserInitiated, 0xFFFFFF);
IS_VALUE(NSActivityUserInitiatedAllowingIdleSystemSleep, 0xEFFFFF);
IS_SUBCLASS(NSProcessInfo, NSObject);
GIVES_OBJECT(NSProcessInfo.processInfo, NSProcessInfo*);
GIVES_OBJECT([any<NSProcessInfo>() beginActivityWithOptions:Exactly<NSActivityOptions>()
                                                     reason:any<NSString>()],
             id<NSObject>);
GIVES([any<NSProcessInfo>() endActivity:valueOf<id<NSObject>>()], void);

IS_SUBCLASS(NSRunLoop, NSObject);
GIVES_OBJECT(NSRunLoop.mainRunLoop, NSRunLoop*);
GIVES([any<NSRunLoop>() performBlock:valueOf<void (^)(void)>()], void);

// The course of an animation

IS_TYPE(CAMediaTimingFunctionName, NSString*);
GIVES_OBJECT(kCAMediaTimingFunctionLinear, NSString*);
GIVES_OBJECT(kCAMediaTimingFunctionEaseIn, NSString*);
IS_SUBCLASS(CAMediaTimingFunction, NSObject);
GIVES_OBJECT([CAMediaTimingFunction functionWithName:valueOf<CAMediaTimingFunctionName>()],
             CAMediaTimingFunction*);

}  // namespace
