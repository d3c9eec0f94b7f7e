// As much of Foundation as the Mac's classes and their tests use. Values are kept as C++ values;
// nothing is toll-free bridged.
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "Tests/Mac/Machine/ObjC/Classes.h"
#include "Tests/Mac/Machine/ObjC/Objects.h"

extern "C" void objc_msgSend(void);

using brivane::stringOf;
using brivane::textOf;

namespace {

brivane::objc::Object* asObject(const void* object) {
  return static_cast<brivane::objc::Object*>(const_cast<void*>(object));
}

}  // namespace

@implementation NSObject
+ (void)initialize {
}
+ (instancetype)alloc {
  void* const object = brivane::objc::allocate(
      static_cast<brivane::objc::Class*>(asObject((__bridge const void*)self)));
  return (__bridge_transfer id)object;
}
+ (instancetype)new {
  return [[self alloc] init];
}
- (instancetype)init {
  return self;
}
- (void)dealloc {
  brivane::objc::deallocate(asObject((__bridge const void*)self));
}
+ (Class)class {
  return self;
}
- (Class)class {
  return object_getClass(self);
}
- (instancetype)self {
  return self;
}
- (id)copy {
  return [static_cast<id<NSCopying>>(self) copyWithZone:nil];
}
- (id)mutableCopy {
  return self;
}
- (BOOL)isEqual:(id)object {
  return self == object;
}
- (NSUInteger)hash {
  return reinterpret_cast<NSUInteger>((__bridge const void*)self);
}
- (BOOL)isKindOfClass:(Class)type {
  for (Class own = object_getClass(self); own != nil; own = class_getSuperclass(own)) {
    if (own == type) return YES;
  }
  return NO;
}
- (BOOL)respondsToSelector:(SEL)name {
  return class_respondsToSelector(object_getClass(self), name);
}
- (id)performSelector:(SEL)name withObject:(id)object {
  reinterpret_cast<void (*)(id, SEL, id)>(objc_msgSend)(self, name, object);
  return nil;
}
- (NSString*)description {
  return stringOf(class_getName(object_getClass(self)));
}
@end

/// What a block answers as an object.
@interface TestBlock : NSObject
@end
extern "C" void* _Block_copy(const void* block);
@implementation TestBlock
- (id)copy {
  return (__bridge_transfer id)_Block_copy((__bridge const void*)self);
}
@end

// Strings

@interface TestString : NSString {
 @public
  std::string text;
}
@end
@implementation TestString
@end

/// Literals: the compiler has laid them out.
@interface NSConstantString : NSString
@end
@implementation NSConstantString
@end

namespace {

struct Literal {
  const void* isa;
  int flags;
  const char* bytes;
  long length;
};

std::string utf8(const char16_t* units, long count) {
  std::string text;
  for (long index = 0; index < count; ++index) {
    const unsigned unit = units[index];
    if (unit < 0x80) {
      text += static_cast<char>(unit);
    } else if (unit < 0x800) {
      text += static_cast<char>(0xC0 | (unit >> 6));
      text += static_cast<char>(0x80 | (unit & 0x3F));
    } else {
      text += static_cast<char>(0xE0 | (unit >> 12));
      text += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
      text += static_cast<char>(0x80 | (unit & 0x3F));
    }
  }
  return text;
}

}  // namespace

namespace brivane {

std::string textOf(NSString* string) {
  if (string == nil) return "(nil)";
  if (![string isKindOfClass:[NSConstantString class]]) {
    return static_cast<TestString*>(string)->text;
  }
  Literal literal{};
  std::memcpy(&literal, (__bridge const void*)string, sizeof literal);
  constexpr int unicode = 0x10;
  if ((literal.flags & unicode) == 0) {
    return {literal.bytes, static_cast<std::size_t>(literal.length)};
  }
  return utf8(reinterpret_cast<const char16_t*>(literal.bytes), literal.length);
}

NSString* stringOf(const std::string& text) {
  TestString* const string = [TestString new];
  string->text = text;
  return string;
}

}  // namespace brivane

@implementation NSString
+ (instancetype)stringWithUTF8String:(const char*)text {
  return stringOf(text);
}
- (const char*)UTF8String {
  if (![self isKindOfClass:[NSConstantString class]]) {
    return static_cast<TestString*>(self)->text.c_str();
  }
  // As long as the pool that is in force lives.
  TestString* const kept = [TestString new];
  kept->text = textOf(self);
  void* const pointer = (__bridge_retained void*)kept;
  return static_cast<TestString*>((__bridge id)brivane::objc::autorelease(asObject(pointer)))
      ->text.c_str();
}
- (NSUInteger)length {
  return textOf(self).size();
}
- (BOOL)isEqualToString:(NSString*)other {
  return textOf(self) == textOf(other);
}
- (BOOL)isEqual:(id)object {
  return [object isKindOfClass:[NSString class]] && [self isEqualToString:object];
}
- (NSString*)description {
  return self;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

// Numbers

@implementation NSValue
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@interface TestNumber : NSNumber {
 @public
  double value;
}
@end
@implementation TestNumber
@end

@implementation NSNumber
+ (NSNumber*)numberWithInt:(int)value {
  return [self numberWithDouble:value];
}
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value {
  return [self numberWithDouble:value];
}
+ (NSNumber*)numberWithInteger:(NSInteger)value {
  return [self numberWithDouble:static_cast<double>(value)];
}
+ (NSNumber*)numberWithDouble:(double)value {
  TestNumber* const number = [TestNumber new];
  number->value = value;
  return number;
}
- (unsigned int)unsignedIntValue {
  return static_cast<unsigned int>(self.doubleValue);
}
- (double)doubleValue {
  return static_cast<TestNumber*>(self)->value;
}
@end

// Collections

@implementation NSArray {
 @protected
  std::vector<id> objects;
}
+ (instancetype)array {
  return [self new];
}
+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count {
  NSArray* const array = [self new];
  array->objects.assign(objects, objects + count);
  return array;
}
- (NSUInteger)count {
  return objects.size();
}
- (id)objectAtIndexedSubscript:(NSUInteger)index {
  return objects.at(index);
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)length {
  state->mutationsPtr = &state->extra[0];
  state->itemsPtr = buffer;
  NSUInteger filled = 0;
  while (filled < length && state->state < objects.size()) {
    buffer[filled++] = objects[state->state++];
  }
  return filled;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return objects.empty() ? [NSArray array]
                         : [NSArray arrayWithObjects:objects.data() count:objects.size()];
}
@end

@implementation NSMutableArray
- (void)addObject:(id)object {
  objects.push_back(object);
}
/// Foundation raises an exception.
- (void)insertObject:(id)object atIndex:(NSUInteger)index {
  if (index > objects.size()) brivane::objc::fail("an object is inserted behind the array's end");
  objects.insert(objects.begin() + static_cast<std::ptrdiff_t>(index), object);
}
- (void)removeObject:(id)object {
  std::erase_if(objects, [object](id own) { return own == object; });
}
- (void)removeAllObjects {
  objects.clear();
}
@end

@implementation NSDictionary {
  std::vector<std::pair<id, id>> entries;
}
+ (instancetype)dictionaryWithObjects:(const id[])objects
                              forKeys:(const id<NSCopying>[])keys
                                count:(NSUInteger)count {
  NSDictionary* const dictionary = [self new];
  for (NSUInteger index = 0; index < count; ++index) {
    dictionary->entries.emplace_back(keys[index], objects[index]);
  }
  return dictionary;
}
- (NSUInteger)count {
  return entries.size();
}
- (id)objectForKeyedSubscript:(id)key {
  for (const auto& [own, object] : entries) {
    if ([own isEqual:key]) return object;
  }
  return nil;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

// URLs and attributed strings

@implementation NSURL {
  NSString* text;
}
+ (instancetype)URLWithString:(NSString*)text {
  if (textOf(text).find(' ') != std::string::npos) return nil;
  NSURL* const url = [NSURL new];
  url->text = text;
  return url;
}
- (NSString*)absoluteString {
  return text;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@implementation NSAttributedString {
  NSString* text;
  NSDictionary* attributes;
}
- (instancetype)initWithString:(NSString*)string attributes:(NSDictionary*)stringAttributes {
  if ((self = [super init])) {
    text = [string copy];
    attributes = stringAttributes;
  }
  return self;
}
- (NSString*)string {
  return text;
}
- (NSDictionary<NSAttributedStringKey, id>*)fakeAttributes {
  return attributes;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

// Announcements

@interface NSNotification () {
 @public
  NSNotificationName ownName;
}
@end
@implementation NSNotification
- (NSNotificationName)name {
  return ownName;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@implementation NSOperationQueue
+ (NSOperationQueue*)mainQueue {
  static NSOperationQueue* const queue = [NSOperationQueue new];
  return queue;
}
@end

@interface TestNotificationObserver : NSObject {
 @public
  NSString* name;
  id sender;
  NSOperationQueue* queue;
  void (^block)(NSNotification*);
}
@end
@implementation TestNotificationObserver
@end

@interface NSNotificationCenter () {
 @public
  NSMutableArray<TestNotificationObserver*>* observers;
}
@end
@implementation NSNotificationCenter
+ (NSNotificationCenter*)defaultCenter {
  static NSNotificationCenter* const center = [NSNotificationCenter new];
  return center;
}
- (instancetype)init {
  if ((self = [super init])) observers = [NSMutableArray array];
  return self;
}
- (id<NSObject>)addObserverForName:(NSNotificationName)name
                            object:(id)object
                             queue:(NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification*))block {
  TestNotificationObserver* const observer = [TestNotificationObserver new];
  observer->name = name;
  observer->sender = object;
  observer->queue = queue;
  observer->block = block;
  [observers addObject:observer];
  return observer;
}
- (void)removeObserver:(id)observer {
  [observers removeObject:observer];
}
@end

namespace brivane {

int announce(NSNotificationCenter* center, NSNotificationName name, id sender) {
  @autoreleasepool {
    NSNotification* const notification = [NSNotification new];
    notification->ownName = name;
    int heard = 0;
    NSArray<TestNotificationObserver*>* const now = [center->observers copy];
    for (TestNotificationObserver* observer in now) {
      if (observer->name != nil && ![observer->name isEqualToString:name]) continue;
      if (observer->sender != nil && observer->sender != sender) continue;
      observer->block(notification);
      ++heard;
    }
    return heard;
  }
}

bool allHearOnTheMainQueue(NSNotificationCenter* center) {
  @autoreleasepool {
    for (TestNotificationObserver* observer in center->observers) {
      if (observer->queue != NSOperationQueue.mainQueue) return false;
    }
    return true;
  }
}

int observerCount(NSNotificationCenter* center) {
  return static_cast<int>(center->observers.count);
}

}  // namespace brivane

// Activities

namespace {

std::vector<NSActivityOptions>& ownActivities() {
  static std::vector<NSActivityOptions> all;
  return all;
}

}  // namespace

@interface TestActivity : NSObject {
 @public
  NSActivityOptions options;
  BOOL isOver;
}
@end
@implementation TestActivity
- (void)end {
  if (isOver) return;
  isOver = YES;
  auto& all = ownActivities();
  all.erase(std::find(all.begin(), all.end(), options));
}
- (void)dealloc {
  [self end];
}
@end

@implementation NSProcessInfo
+ (NSProcessInfo*)processInfo {
  static NSProcessInfo* const process = [NSProcessInfo new];
  return process;
}
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason {
  TestActivity* const activity = [TestActivity new];
  activity->options = options;
  ownActivities().push_back(options);
  return activity;
}
- (void)endActivity:(id<NSObject>)activity {
  [static_cast<TestActivity*>(activity) end];
}
@end

namespace brivane {

const std::vector<NSActivityOptions>& activities() {
  return ownActivities();
}

}  // namespace brivane

// Key-value observing

namespace {

struct KeyValueObserver {
  NSObject* __unsafe_unretained observer;
  NSObject* __unsafe_unretained observed;
  std::string keyPath;
  void* context;

  bool operator==(const KeyValueObserver&) const = default;
};

std::vector<KeyValueObserver>& keyValueObservers() {
  static std::vector<KeyValueObserver> observers;
  return observers;
}

}  // namespace

@implementation NSObject (NSKeyValueObserving)
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
  brivane::objc::fail("nobody has asked to be told of " + textOf(keyPath));
}
@end

@implementation NSObject (NSKeyValueObserverRegistration)
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(void*)context {
  keyValueObservers().push_back({observer, self, textOf(keyPath), context});
}
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath context:(void*)context {
  auto& observers = keyValueObservers();
  const auto found = std::find(observers.begin(), observers.end(),
                               KeyValueObserver{observer, self, textOf(keyPath), context});
  if (found == observers.end()) {
    brivane::objc::fail("an observer of " + textOf(keyPath) + " is removed that is none");
  }
  observers.erase(found);
}
@end

namespace brivane {

void announceChange(NSObject* object, NSString* keyPath) {
  @autoreleasepool {
    const auto now = keyValueObservers();
    for (const KeyValueObserver& entry : now) {
      if (entry.observed != object || entry.keyPath != textOf(keyPath)) continue;
      [entry.observer observeValueForKeyPath:keyPath
                                    ofObject:object
                                      change:nil
                                     context:entry.context];
    }
  }
}

int keyValueObserverCount() {
  return static_cast<int>(keyValueObservers().size());
}

}  // namespace brivane
