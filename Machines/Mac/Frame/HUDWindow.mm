// AppKit animates the window's alpha; animations within the picture are drawn here, step by step.
// The timer runs during an animation only.
#include "Machines/Mac/Frame/HUDWindow.h"

#import <QuartzCore/CAMediaTimingFunction.h>

#include <utility>

#include "Machines/Mac/Frame/AppKitValues.h"
#include "Machines/Mac/Frame/PictureView.h"

@interface BrivaneHUDWindow : NSWindow
@end

@implementation BrivaneHUDWindow

- (BOOL)canBecomeKeyWindow {
  return NO;
}

- (BOOL)canBecomeMainWindow {
  return NO;
}

@end

namespace brivane {
namespace {

constexpr Microseconds contentStep{16'667};

CAMediaTimingFunction* function(AnimationTiming timing) {
  return [CAMediaTimingFunction functionWithName:timing == AnimationTiming::easeIn
                                                     ? kCAMediaTimingFunctionEaseIn
                                                     : kCAMediaTimingFunctionLinear];
}

BrivaneHUDWindow* makeWindow(const HUDWindowAttributes& attributes) {
  BrivaneHUDWindow* const window = [[BrivaneHUDWindow alloc]
      initWithContentRect:nsRect(attributes.contentRect)
                styleMask:static_cast<NSWindowStyleMask>(attributes.styleMask)
                  backing:static_cast<NSBackingStoreType>(attributes.backing)
                    defer:attributes.isDeferred];
  window.opaque = attributes.isOpaque;
  if (attributes.hasClearBackground) window.backgroundColor = NSColor.clearColor;
  window.hasShadow = attributes.hasShadow;
  window.ignoresMouseEvents = attributes.ignoresMouseEvents;
  window.releasedWhenClosed = attributes.isReleasedWhenClosed;
  window.hidesOnDeactivate = attributes.hidesOnDeactivate;
  // The application is hidden when the editor is closed.
  window.canHide = NO;
  window.level = static_cast<NSWindowLevel>(attributes.level);
  window.collectionBehavior =
      static_cast<NSWindowCollectionBehavior>(attributes.collectionBehavior);
  window.animationBehavior = static_cast<NSWindowAnimationBehavior>(attributes.animationBehavior);
  return window;
}

}  // namespace

MacHUDWindow::MacHUDWindow(const HUDWindowAttributes& windowAttributes, Runtime& frameRuntime)
    : attributes(windowAttributes), runtime(frameRuntime), window(makeWindow(windowAttributes)) {}

MacHUDWindow::~MacHUDWindow() {
  anchor.kill();
  endChange();
  [window orderOut:nil];
}

Rect MacHUDWindow::frame() {
  return rectOf(window.frame);
}

void MacHUDWindow::setFrame(const Rect& frame) {
  [window setFrame:nsRect(frame) display:NO];
}

bool MacHUDWindow::isVisible() {
  return window.visible;
}

/// A running fade would overwrite a value that is set directly, so it is replaced first.
void MacHUDWindow::setAlpha(double alpha) {
  if (std::exchange(mayBeFading, false)) {
    animateAlpha(alpha, 0, AnimationTiming::linear, {});
  }
  window.alphaValue = alpha;
}

void MacHUDWindow::animateAlpha(double alpha, double durationSeconds, AnimationTiming timing,
                                Task completion) {
  mayBeFading = durationSeconds > 0;
  const int fade = ++fades;
  // This object may be destroyed before the end.
  const auto watch = anchor.watch();
  Runtime* const queue = &runtime;
  void (^const whenOver)(void) = ^{
    if (watch.isAlive() && fades == fade) mayBeFading = false;
    if (completion) queue->async(completion);
  };
  [NSAnimationContext
      runAnimationGroup:^(NSAnimationContext* context) {
        context.duration = durationSeconds;
        context.timingFunction = function(timing);
        [window animator].alphaValue = alpha;
      }
      completionHandler:whenOver];
}

/// A hidden application may show no new window, not even one that refuses to hide with it.
void MacHUDWindow::orderFrontRegardless() {
  [NSApplication.sharedApplication unhideWithoutActivation];
  [window orderFrontRegardless];
}

void MacHUDWindow::orderOut() {
  [window orderOut:nil];
  endChange();
  if (view != nil) [view showPicture:content.to];
}

void MacHUDWindow::installContentView(const DisplayList& newContent) {
  const Rect& size = attributes.contentRect;
  view = [[BrivanePictureView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
  [view setAccessibilityElement:YES];
  [view setAccessibilityRole:NSAccessibilityStaticTextRole];
  view.autoresizingMask = static_cast<NSAutoresizingMaskOptions>(attributes.autoresizingMask);
  show(newContent, 0);
  window.contentView = view;
  [window invalidateShadow];
}

void MacHUDWindow::updateContent(const DisplayList& newContent, ContentChange change) {
  const bool moves = change == ContentChange::animated && window.visible;
  show(newContent, moves ? contentChangeSeconds : 0);
}

/// Without the highest priority it would be dropped while the screen reader says which key was
/// pressed.
void MacHUDWindow::announce(const std::string& text) {
  if (!window.visible) return;
  NSAccessibilityPostNotificationWithUserInfo(
      NSApplication.sharedApplication, NSAccessibilityAnnouncementRequestedNotification, @{
        NSAccessibilityAnnouncementKey : nsString(text),
        NSAccessibilityPriorityKey : @(NSAccessibilityPriorityHigh),
      });
}

void MacHUDWindow::show(const DisplayList& newContent, double durationSeconds) {
  content.turnTo(newContent, durationSeconds, runtime.now());
  showMoment();
  if (content.progress(runtime.now()) < 1 && changeTimer == 0) {
    changeTimer = runtime.every(contentStep, [this] { showMoment(); });
  }
}

void MacHUDWindow::showMoment() {
  const Instant now = runtime.now();
  if (view != nil) [view showPicture:content.picture(now)];
  if (content.progress(now) >= 1) endChange();
}

void MacHUDWindow::endChange() {
  content.durationSeconds = 0;
  runtime.cancel(std::exchange(changeTimer, 0));
}

}  // namespace brivane
