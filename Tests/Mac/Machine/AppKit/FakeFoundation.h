#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <vector>

namespace brivane {

/// "(nil)" for nil.
std::string textOf(NSString* string);
NSString* stringOf(const std::string& text);

/// As the system announces something: every observer of that name, or of all, hears of it before
/// this returns, unless it listens to another sender. Gives how many did.
int announce(NSNotificationCenter* center, NSNotificationName name, id sender);

/// Observers that nobody has removed.
int observerCount(NSNotificationCenter* center);
/// Without a queue an observer is told on whatever thread the announcement comes from.
bool allHearOnTheMainQueue(NSNotificationCenter* center);

/// What the process has told the system that it is about, and not ended.
const std::vector<NSActivityOptions>& activities();

/// A property has a new value: whoever observes it is told.
void announceChange(NSObject* object, NSString* keyPath);
int keyValueObserverCount();

}  // namespace brivane

@interface NSAttributedString (FakeFoundation)
- (NSDictionary<NSAttributedStringKey, id>*)fakeAttributes;
@end
