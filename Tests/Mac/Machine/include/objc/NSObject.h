#pragma once

#include <objc/objc.h>

@class NSString;

@protocol NSObject
- (BOOL)isEqual:(id)object;
@property(readonly) NSUInteger hash;
- (Class)class;
- (instancetype)self;
- (BOOL)isKindOfClass:(Class)type;
- (BOOL)respondsToSelector:(SEL)name;
- (id)performSelector:(SEL)name withObject:(id)object;
@property(readonly, copy) NSString* description;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
  Class isa;
}
+ (void)initialize;
- (instancetype)init;
+ (instancetype)new;
+ (instancetype)alloc;
- (void)dealloc;
- (id)copy;
- (id)mutableCopy;
+ (Class)class;
@end
