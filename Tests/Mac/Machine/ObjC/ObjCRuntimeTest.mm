// The run time that the other tests of this folder rest on: if it kept objects longer or shorter
// than a Mac does, what they say of the product would be worth nothing.
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <string>

#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Mac/Machine/ObjC/Objects.h"

using brivane::objc::liveObjects;

@interface Lamp : NSObject {
 @public
  std::string label;
  int level;
}
@property(nonatomic, weak) Lamp* neighbour;
@property(nonatomic, strong) Lamp* twin;
@property(nonatomic, copy) int (^answer)(int);
- (NSRect)place;
- (double)scaled:(double)by plus:(int)one plus:(int)two plus:(int)three plus:(int)four;
+ (int)count;
@end

@implementation Lamp
- (NSRect)place {
  return NSMakeRect(level, 2, 3, 4);
}
- (double)scaled:(double)by plus:(int)one plus:(int)two plus:(int)three plus:(int)four {
  return level * by + one + two + three + four;
}
+ (int)count {
  return static_cast<int>(liveObjects("Lamp"));
}
@end

@interface BrightLamp : Lamp {
 @public
  int boost;
}
@end

@implementation BrightLamp
- (NSRect)place {
  NSRect rect = [super place];
  rect.size.width += boost;
  return rect;
}
@end

@interface Lamp (Doubling)
- (int)doubled;
@end

@implementation Lamp (Doubling)
- (int)doubled {
  return level * 2;
}
@end

/// Nobody has written it.
@interface Lamp (Unwritten)
- (void)explode;
@end

/// A class whose `initialize` is called once, before anything else.
@interface Counted : NSObject
+ (int)initialized;
@end

static int timesInitialized = 0;

@implementation Counted
+ (void)initialize {
  ++timesInitialized;
}
+ (int)initialized {
  return timesInitialized;
}
@end

namespace brivane {
namespace {

class ObjCRuntime : public testing::Test {
 protected:
  ~ObjCRuntime() override { EXPECT_EQ(liveObjects("Lamp") + liveObjects("BrightLamp"), 0); }
};

TEST_F(ObjCRuntime, AnObjectLivesUntilItsLastReferenceGoes) {
  @autoreleasepool {
    Lamp* first = [[Lamp alloc] init];
    Lamp* second = first;
    first = nil;
    EXPECT_EQ(liveObjects("Lamp"), 1);
    EXPECT_NE(second, nil);
    second = nil;
    EXPECT_EQ(liveObjects("Lamp"), 0);
  }
}

TEST_F(ObjCRuntime, CppVariablesAreMadeAndDestroyedWithTheirObject) {
  @autoreleasepool {
    Lamp* const lamp = [Lamp new];
    lamp->label = std::string(100, 'x');
    EXPECT_EQ(lamp->label.size(), 100U);
    EXPECT_EQ(lamp->level, 0);
  }
}

TEST_F(ObjCRuntime, AVariableOfASubclassLiesBehindThoseOfItsSuperclass) {
  @autoreleasepool {
    BrightLamp* const lamp = [BrightLamp new];
    lamp->level = 7;
    lamp->boost = 11;
    lamp->label = "bright";
    EXPECT_EQ(lamp->level, 7);
    EXPECT_EQ([lamp place].size.width, 14) << "a large result, through super";
    EXPECT_EQ([lamp place].origin.x, 7);
  }
}

TEST_F(ObjCRuntime, ArgumentsOfBothKindsReachTheMethod) {
  @autoreleasepool {
    Lamp* const lamp = [Lamp new];
    lamp->level = 10;
    EXPECT_EQ(([lamp scaled:1.5 plus:1 plus:20 plus:300 plus:4000]), 4336);
    EXPECT_EQ([lamp doubled], 20) << "of a category";
    EXPECT_EQ([Lamp count], 1) << "of the class";
  }
}

TEST_F(ObjCRuntime, NilAnswersZero) {
  Lamp* const nobody = nil;
  EXPECT_EQ([nobody doubled], 0);
  EXPECT_EQ(([nobody scaled:2 plus:1 plus:1 plus:1 plus:1]), 0);
  EXPECT_EQ([nobody place].size.width, 0);
}

TEST_F(ObjCRuntime, AWeakReferenceBecomesNilWithItsObject) {
  @autoreleasepool {
    Lamp* const lamp = [Lamp new];
    @autoreleasepool {
      Lamp* const neighbour = [Lamp new];
      lamp.neighbour = neighbour;
      EXPECT_EQ(lamp.neighbour, neighbour);
    }
    EXPECT_EQ(lamp.neighbour, nil);
  }
}

TEST_F(ObjCRuntime, TwoThatHoldEachOtherStayAndAreCounted) {
  Lamp* __unsafe_unretained leaked = nil;
  @autoreleasepool {
    Lamp* const one = [Lamp new];
    one.twin = [Lamp new];
    one.twin.twin = one;
    leaked = one;
  }
  EXPECT_EQ(liveObjects("Lamp"), 2);
  @autoreleasepool {
    leaked.twin.twin = nil;
  }
}

TEST_F(ObjCRuntime, APoolLetsGoOfWhatItWasGivenWhenItEnds) {
  __weak Lamp* seen = nil;
  @autoreleasepool {
    @autoreleasepool {
      NSArray* const all = @[ [Lamp new], [Lamp new] ];
      seen = all[0];
      EXPECT_NE(seen, nil);
    }
    EXPECT_EQ(seen, nil);
  }
}

TEST_F(ObjCRuntime, ABlockKeepsWhatItUsesUntilItGoes) {
  @autoreleasepool {
    Lamp* const owner = [Lamp new];
    @autoreleasepool {
      Lamp* const kept = [Lamp new];
      kept->level = 5;
      owner.answer = ^(int by) {
        return kept->level * by;
      };
    }
    EXPECT_EQ(liveObjects("Lamp"), 2);
    EXPECT_EQ(owner.answer(3), 15);
    owner.answer = nil;
    EXPECT_EQ(liveObjects("Lamp"), 1);
  }
}

TEST_F(ObjCRuntime, AClassIsInitializedOnceBeforeItsFirstMessage) {
  EXPECT_EQ([Counted initialized], 1);
  EXPECT_EQ([Counted initialized], 1);
}

TEST_F(ObjCRuntime, WhatIsReleasedTooOftenEndsTheProgram) {
  @autoreleasepool {
    void* const lamp = (__bridge_retained void*)[Lamp new];
    EXPECT_EQ(liveObjects("Lamp"), 1);
    (void)(__bridge_transfer id)lamp;
  }
  EXPECT_DEATH(
      {
        @autoreleasepool {
          void* const lamp = (__bridge_retained void*)[Lamp new];
          (void)(__bridge_transfer id)lamp;
          (void)(__bridge_transfer id)lamp;
        }
      },
      "gone|heap-use-after-free");
}

TEST_F(ObjCRuntime, AMessageThatNobodyKnowsEndsTheProgram) {
  EXPECT_DEATH(
      {
        @autoreleasepool {
          [[Lamp new] explode];
        }
      },
      "Lamp does not recognise explode");
}

TEST_F(ObjCRuntime, AConstantThatIsReleasedOnceTooOftenIsMissing) {
  const auto before = liveObjects();
  @autoreleasepool {
    (void)(__bridge_transfer NSString*)(__bridge void*)@"nobody's";
  }
  EXPECT_NE(liveObjects(), before);
  (void)(__bridge_retained void*)@"nobody's";
  EXPECT_EQ(liveObjects(), before);
}

TEST(FakeFoundation, StringsKeepTheirText) {
  @autoreleasepool {
    EXPECT_EQ(textOf(@"Halden"), "Halden");
    EXPECT_EQ(textOf(@"Größe ⌃"), "Größe ⌃") << "a literal beyond ASCII";
    EXPECT_EQ(std::string([stringOf("ä") UTF8String]), "ä");
    EXPECT_TRUE([stringOf("same") isEqual:@"same"]);
    EXPECT_FALSE([@"same" isEqualToString:@"other"]);
  }
}

TEST(FakeFoundation, NothingIsInsertedBehindTheEndOfAnArray) {
  @autoreleasepool {
    NSMutableArray* const array = [NSMutableArray array];
    [array insertObject:@"first" atIndex:0];
    [array insertObject:@"last" atIndex:1];
    EXPECT_DEATH([array insertObject:@"nowhere" atIndex:3], "behind the array's end");
  }
}

TEST(FakeFoundation, AnnouncementsReachWhoeverObservesThatNameAtThatCenter) {
  @autoreleasepool {
    NSNotificationCenter* const center = [NSNotificationCenter new];
    __block int heard = 0;
    id const observer = [center addObserverForName:@"wake"
                                            object:nil
                                             queue:nil
                                        usingBlock:^(NSNotification*) {
                                          ++heard;
                                        }];
    EXPECT_EQ(announce(center, @"sleep", nil), 0);
    EXPECT_EQ(announce([NSNotificationCenter defaultCenter], @"wake", nil), 0);
    EXPECT_EQ(announce(center, @"wake", nil), 1);
    [center removeObserver:observer];
    EXPECT_EQ(announce(center, @"wake", nil), 0);
    id const choosy = [center addObserverForName:@"wake"
                                          object:center
                                           queue:nil
                                      usingBlock:^(NSNotification*){
                                      }];
    EXPECT_EQ(announce(center, @"wake", nil), 0);
    EXPECT_EQ(announce(center, @"wake", center), 1);
    [center removeObserver:choosy];
    EXPECT_EQ(heard, 1);
  }
}

}  // namespace
}  // namespace brivane
