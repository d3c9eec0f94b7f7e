#pragma once

#import <Foundation/Foundation.h>

#include <string>

namespace brivane {

/// "(nil)" for nil.
std::string textOf(NSString* string);
NSString* stringOf(const std::string& text);

/// As the system announces something: every observer of that name, or of all, hears of it before
/// this returns. Gives how many did.
int announce(NSNotificationCenter* center, NSNotificationName name);

/// Observers that nobody has removed.
int observerCount(NSNotificationCenter* center);

/// A property has a new value: whoever observes it is told.
void announceChange(NSObject* object, NSString* keyPath);
int keyValueObserverCount();

}  // namespace brivane

@interface NSAttributedString (FakeFoundation)
- (NSDictionary<NSAttributedStringKey, id>*)fakeAttributes;
@end
