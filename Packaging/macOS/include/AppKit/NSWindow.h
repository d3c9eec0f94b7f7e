#pragma once

#import <AppKit/NSColor.h>
#import <AppKit/NSView.h>

@class CAMediaTimingFunction;
@class NSWindow;

#pragma clang assume_nonnull begin

typedef NSInteger NSWindowLevel;

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
  NSWindowStyleMaskBorderless = 0,
  NSWindowStyleMaskTitled = 1 << 0,
  NSWindowStyleMaskClosable = 1 << 1,
};

typedef NS_ENUM(NSUInteger, NSBackingStoreType) {
  NSBackingStoreBuffered = 2,
};

typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
  NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
  NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
  NSWindowCollectionBehaviorStationary = 1 << 4,
  NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
  NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};

typedef NS_ENUM(NSInteger, NSWindowAnimationBehavior) {
  NSWindowAnimationBehaviorDefault = 0,
  NSWindowAnimationBehaviorNone = 2,
};

@protocol NSWindowDelegate <NSObject>
@optional
- (void)windowWillClose:(NSNotification*)notification;
- (void)windowDidResignKey:(NSNotification*)notification;
@end

/// What changes an object's properties little by little, in the animation group that is being made.
@protocol NSAnimatablePropertyContainer
- (instancetype)animator;
@end

@interface NSWindow : NSResponder <NSAnimatablePropertyContainer>
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)isDeferred NS_DESIGNATED_INITIALIZER;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property(copy) NSString* title;
@property(nullable, strong) NSView* contentView;
@property(getter=isOpaque) BOOL opaque;
@property(null_resettable, copy) NSColor* backgroundColor;
@property BOOL hasShadow;
@property BOOL ignoresMouseEvents;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property BOOL hidesOnDeactivate;
/// Whether it is hidden with its application.
@property BOOL canHide;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property NSWindowAnimationBehavior animationBehavior;
@property CGFloat alphaValue;
@property(getter=isRestorable) BOOL restorable;
@property(readonly) NSRect frame;
@property(readonly, getter=isVisible) BOOL visible;
@property(readonly) BOOL canBecomeKeyWindow;
@property(readonly) BOOL canBecomeMainWindow;
@property(nullable, readonly, strong) NSResponder* firstResponder;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
- (void)setFrame:(NSRect)frame display:(BOOL)displays;
- (void)center;
- (void)orderFrontRegardless;
- (void)orderOut:(nullable id)sender;
- (void)makeKeyAndOrderFront:(nullable id)sender;
/// As a click on the close button.
- (void)performClose:(nullable id)sender;
- (void)close;
- (void)invalidateShadow;
@end

@interface NSAnimationContext : NSObject
+ (void)runAnimationGroup:(void (^)(NSAnimationContext* context))changes
        completionHandler:(nullable void (^)(void))completionHandler;
@property NSTimeInterval duration;
@property(nullable, strong) CAMediaTimingFunction* timingFunction;
@end

#pragma clang assume_nonnull end
