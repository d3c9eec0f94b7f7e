// Views, controls and windows, as far as their order of events goes: who gets a click or key, and
// in what order responders give way to each other.
#import <QuartzCore/CAMediaTimingFunction.h>

#include <algorithm>

#include "Tests/Mac/Machine/AppKit/FakeDesktop.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Mac/Machine/ObjC/Classes.h"

using brivane::FakeDesktop;
using brivane::textOf;

const CAMediaTimingFunctionName kCAMediaTimingFunctionLinear = @"linear";
const CAMediaTimingFunctionName kCAMediaTimingFunctionEaseIn = @"easeIn";
const NSAccessibilityRole NSAccessibilityButtonRole = @"AXButton";
const NSAccessibilityRole NSAccessibilityStaticTextRole = @"AXStaticText";

@implementation NSResponder
- (BOOL)acceptsFirstResponder {
  return NO;
}
- (BOOL)becomeFirstResponder {
  return YES;
}
- (BOOL)resignFirstResponder {
  return YES;
}
- (void)mouseDown:(NSEvent*)event {
}
- (void)keyDown:(NSEvent*)event {
  FakeDesktop::shared().notes.push_back("nobody takes key " + std::to_string(event.keyCode));
}
- (BOOL)performKeyEquivalent:(NSEvent*)event {
  return NO;
}
@end

// Views

@interface NSView () {
 @public
  NSMutableArray<NSView*>* subviews;
  NSView* __unsafe_unretained superview;
  NSWindow* __unsafe_unretained ownWindow;
  NSString* label;
  NSString* role;
  BOOL isElement;
}
@end

@implementation NSView
@synthesize frame, autoresizingMask, needsDisplay, toolTip;
- (instancetype)initWithFrame:(NSRect)viewFrame {
  if ((self = [super init])) {
    self.frame = viewFrame;
    subviews = [NSMutableArray array];
  }
  return self;
}
- (instancetype)initWithCoder:(NSCoder*)coder {
  if ((self = [super init])) subviews = [NSMutableArray array];
  return self;
}
- (instancetype)init {
  return [self initWithFrame:NSMakeRect(0, 0, 0, 0)];
}
- (void)dealloc {
  for (NSView* view in subviews) view->superview = nil;
}
- (NSRect)bounds {
  return NSMakeRect(0, 0, self.frame.size.width, self.frame.size.height);
}
- (NSWindow*)window {
  return superview == nil ? ownWindow : superview.window;
}
- (void)addSubview:(NSView*)view {
  [subviews addObject:view];
  view->superview = self;
}
- (void)removeFromSuperview {
  NSView* const parent = superview;
  superview = nil;
  if (parent != nil) [parent->subviews removeObject:self];
}
- (void)drawRect:(NSRect)dirtyRect {
}
- (void)setAccessibilityElement:(BOOL)isOne {
  isElement = isOne;
}
- (void)setAccessibilityRole:(NSAccessibilityRole)newRole {
  role = newRole;
}
- (void)setAccessibilityLabel:(NSString*)newLabel {
  label = newLabel;
}
- (NSString*)accessibilityLabel {
  return label;
}
- (id)accessibilityValue {
  return nil;
}
- (BOOL)accessibilityPerformPress {
  return NO;
}
/// Without what a control has around its visible part.
- (NSRect)frameForAlignmentRect:(NSRect)rect {
  const CGFloat around = [self fakeInset];
  return NSMakeRect(rect.origin.x - around, rect.origin.y, rect.size.width + 2 * around,
                    rect.size.height);
}
- (CGFloat)fakeInset {
  return 0;
}
- (NSArray<NSView*>*)fakeSubviews {
  return [subviews copy];
}
/// A view is no element by itself, and the screen reader passes it.
- (NSString*)fakeRole {
  return isElement ? role : nil;
}
@end

namespace brivane {

std::vector<NSView*> viewsBelow(NSView* view) {
  std::vector<NSView*> all = {view};
  for (NSView* child in [view fakeSubviews]) {
    for (NSView* const& each : viewsBelow(child)) all.push_back(each);
  }
  return all;
}

}  // namespace brivane

@implementation NSControl
@synthesize target, action, continuous, doubleValue, stringValue, font;
@end

@implementation NSSlider
@synthesize minValue, maxValue;
- (CGFloat)fakeInset {
  return 2;
}
+ (instancetype)sliderWithValue:(double)value
                       minValue:(double)minimum
                       maxValue:(double)maximum
                         target:(id)target
                         action:(SEL)action {
  NSSlider* const slider = [NSSlider new];
  slider.minValue = minimum;
  slider.maxValue = maximum;
  slider.doubleValue = value;
  slider.target = target;
  slider.action = action;
  return slider;
}
@end

@implementation NSTextField
+ (instancetype)labelWithString:(NSString*)text {
  NSTextField* const field = [NSTextField new];
  field.stringValue = text;
  return field;
}
@end

@implementation NSButton
@synthesize title, image, bezelStyle;
+ (instancetype)buttonWithTitle:(NSString*)title target:(id)target action:(SEL)action {
  NSButton* const button = [NSButton new];
  button.title = title;
  button.target = target;
  button.action = action;
  return button;
}
@end

@implementation NSProgressIndicator {
  BOOL isTurning;
}
@synthesize style, controlSize, indeterminate;
- (void)startAnimation:(id)sender {
  isTurning = YES;
}
- (BOOL)fakeIsTurning {
  return isTurning;
}
@end

// Animations

@implementation CAMediaTimingFunction {
 @public
  NSString* name;
}
+ (instancetype)functionWithName:(CAMediaTimingFunctionName)name {
  CAMediaTimingFunction* const function = [CAMediaTimingFunction new];
  function->name = name;
  return function;
}
@end

namespace {

NSAnimationContext* currentContext;

}  // namespace

@implementation NSAnimationContext
@synthesize duration, timingFunction;
+ (void)runAnimationGroup:(void (^)(NSAnimationContext*))changes
        completionHandler:(void (^)(void))completionHandler {
  NSAnimationContext* const outer = currentContext;
  currentContext = [NSAnimationContext new];
  currentContext.duration = 0.25;
  changes(currentContext);
  if (completionHandler != nil) {
    FakeDesktop::shared().loop.after(currentContext.duration,
                                     [completionHandler] { completionHandler(); });
  }
  currentContext = outer;
}
@end

/// Where a window's properties go while an animation group is made.
@interface TestWindowAnimator : NSObject {
 @public
  NSWindow* window;
}
- (void)setAlphaValue:(CGFloat)alpha;
@end

// Windows

@interface NSWindow () {
 @public
  NSRect ownFrame;
  NSWindowStyleMask styleMask;
  BOOL isShown;
  BOOL isHiddenWithApplication;
  /// With the application, even if the window was closed in the meantime.
  BOOL comesBack;
  BOOL isInFront;
  /// Once the application is active.
  BOOL isToBeKey;
  BOOL isKey;
  /// 0 before the window was first shown.
  int space;
  NSWindowCollectionBehavior behavior;
  BOOL isCentered;
  BOOL displayedLastFrame;
  NSView* content;
  NSColor* background;
  CGFloat alpha;
  NSResponder* responder;
  brivane::FakeFade lastFade;
  /// Tells a fade from those that took its place.
  int fades;
}
@end

@implementation NSWindow
@synthesize delegate, title, opaque, hasShadow, ignoresMouseEvents, releasedWhenClosed,
    hidesOnDeactivate, canHide, level, animationBehavior, restorable;
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)isDeferred {
  if ((self = [super init])) {
    ownFrame = contentRect;
    styleMask = style;
    alpha = 1;
    self.releasedWhenClosed = YES;
    self.restorable = YES;
    self.opaque = YES;
    self.canHide = YES;
    self.hasShadow = YES;
    self.contentView = [[NSView alloc]
        initWithFrame:NSMakeRect(0, 0, contentRect.size.width, contentRect.size.height)];
    FakeDesktop::shared().windows.push_back(self);
    FakeDesktop::shared().notes.push_back("window, style " + std::to_string(style) + ", backing " +
                                          std::to_string(backing) +
                                          (isDeferred ? ", deferred" : ""));
  }
  return self;
}
- (void)dealloc {
  if (content != nil) content->ownWindow = nil;
}
- (instancetype)animator {
  TestWindowAnimator* const animator = [TestWindowAnimator new];
  animator->window = self;
  return static_cast<id>(animator);
}
- (NSView*)contentView {
  return content;
}
- (void)setContentView:(NSView*)view {
  if (content != nil) content->ownWindow = nil;
  content = view;
  if (view != nil) view->ownWindow = self;
  if (responder != self && responder != nil) [self makeFirstResponder:nil];
}
- (NSColor*)backgroundColor {
  return background;
}
- (void)setBackgroundColor:(NSColor*)color {
  background = color == nil ? NSColor.controlBackgroundColor : color;
}
- (CGFloat)alphaValue {
  return alpha;
}
/// A running fade goes on.
- (void)setAlphaValue:(CGFloat)newAlpha {
  alpha = std::clamp(newAlpha, 0.0, 1.0);
}
- (NSWindowCollectionBehavior)collectionBehavior {
  return behavior;
}
/// AppKit raises an exception.
- (void)setCollectionBehavior:(NSWindowCollectionBehavior)newBehavior {
  if ((newBehavior & NSWindowCollectionBehaviorCanJoinAllSpaces) != 0 &&
      (newBehavior & NSWindowCollectionBehaviorMoveToActiveSpace) != 0) {
    brivane::objc::fail("a window is on every Space or moves from one to another");
  }
  behavior = newBehavior;
}
- (NSRect)frame {
  return ownFrame;
}
- (BOOL)isVisible {
  return isShown && !isHiddenWithApplication;
}
- (BOOL)canBecomeKeyWindow {
  return YES;
}
- (BOOL)canBecomeMainWindow {
  return YES;
}
- (NSResponder*)firstResponder {
  return responder == nil ? self : responder;
}
- (BOOL)makeFirstResponder:(NSResponder*)newResponder {
  if (responder != nil && responder == newResponder) return YES;
  if (responder != nil && ![responder resignFirstResponder]) return NO;
  responder = nil;
  if (newResponder == nil || !newResponder.acceptsFirstResponder) return YES;
  responder = newResponder;
  return [newResponder becomeFirstResponder];
}
- (void)setFrame:(NSRect)newFrame display:(BOOL)displays {
  ownFrame = newFrame;
  displayedLastFrame = displays;
}
- (void)center {
  isCentered = YES;
}
- (void)orderFrontRegardless {
  [self show];
  isInFront = YES;
}
- (void)orderOut:(id)sender {
  isShown = NO;
  isInFront = NO;
  isToBeKey = NO;
  [self fakeResignsKey];
}
/// Behind the windows of the active application, and without the keys before this one is active.
- (void)makeKeyAndOrderFront:(id)sender {
  [self show];
  if (!self.canBecomeKeyWindow) {
    FakeDesktop::shared().notes.emplace_back("a window that can't become key was to");
  }
  isToBeKey = self.canBecomeKeyWindow;
  if (FakeDesktop::shared().isActive) [self fakeApplicationIsActive];
}
/// On its own Space, which need not be the one that the user looks at. A hidden application shows
/// nothing new; what refuses to hide with it only stays.
- (void)show {
  const FakeDesktop& desktop = FakeDesktop::shared();
  isShown = YES;
  isHiddenWithApplication = desktop.isHidden;
  if (space == 0 || (behavior & NSWindowCollectionBehaviorMoveToActiveSpace) != 0) {
    space = desktop.activeSpace;
  }
}
- (BOOL)isOnActiveSpace {
  const FakeDesktop& desktop = FakeDesktop::shared();
  if (desktop.isActiveSpaceFullScreen &&
      (behavior & NSWindowCollectionBehaviorFullScreenAuxiliary) == 0) {
    return NO;
  }
  return (behavior & NSWindowCollectionBehaviorCanJoinAllSpaces) != 0 ||
         space == desktop.activeSpace;
}
- (void)performClose:(id)sender {
  if ((styleMask & NSWindowStyleMaskClosable) == 0) return NSBeep();
  [self close];
}
- (void)close {
  NSNotification* const notification = [NSNotification new];
  const id<NSWindowDelegate> listener = self.delegate;
  if ([listener respondsToSelector:@selector(windowWillClose:)]) {
    [listener windowWillClose:notification];
  }
  [self orderOut:nil];
  // What the system would do itself.
  if (self.releasedWhenClosed) {
    brivane::objc::fail("a window that ARC owns is released when it closes");
  }
}
- (void)invalidateShadow {
  FakeDesktop::shared().notes.emplace_back("shadow anew");
}
- (BOOL)fakeIsSeen {
  return self.visible && isInFront && alpha > 0 && [self isOnActiveSpace];
}
- (void)fakeApplicationIsActive {
  if (!isShown) return;
  isInFront = YES;
  isKey = isToBeKey;
}
- (void)fakeApplicationIsHidden:(BOOL)isHidden {
  isHiddenWithApplication = isHidden && isShown && self.canHide;
  if (isHiddenWithApplication) [self fakeResignsKey];
  if (!isHidden && comesBack) isShown = isInFront = YES;
  comesBack = isHiddenWithApplication;
}
- (void)fakeResignsKey {
  isToBeKey = NO;
  if (!isKey) return;
  isKey = NO;
  const id<NSWindowDelegate> listener = self.delegate;
  if ([listener respondsToSelector:@selector(windowDidResignKey:)]) {
    [listener windowDidResignKey:[NSNotification new]];
  }
}
- (void)fakeUserCloses {
  // AppKit keeps a window only as long as somebody else does.
  __weak NSWindow* const seen = self;
  [self close];
  if (seen == nil) brivane::objc::fail("a window went while it was closing");
}
- (brivane::FakeFade)fakeLastFade {
  return lastFade;
}
- (NSWindowStyleMask)fakeStyleMask {
  return styleMask;
}
- (BOOL)fakeIsKey {
  return isKey;
}
- (BOOL)fakeIsCentered {
  return isCentered;
}
- (BOOL)fakeDisplayedLastFrame {
  return displayedLastFrame;
}
@end

@implementation TestWindowAnimator
- (void)setAlphaValue:(CGFloat)alpha {
  const double seconds = currentContext == nil ? 0.25 : currentContext.duration;
  CAMediaTimingFunction* const function = currentContext.timingFunction;
  window->lastFade = {alpha, seconds, function == nil ? "" : textOf(function->name)};
  const int fade = ++window->fades;
  if (seconds <= 0) {
    window->alpha = alpha;
    return;
  }
  NSWindow* const faded = window;
  FakeDesktop::shared().loop.after(seconds, [faded, fade, alpha] {
    if (faded->fades == fade) faded->alpha = alpha;
  });
}
@end
