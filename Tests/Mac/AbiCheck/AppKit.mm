// Holds our own declarations of Foundation and AppKit against the real ones: what the classes
// answer is compared by type, so that compiled with the SDK of a Mac every line that isn't true
// there is an error; compiled elsewhere it holds our headers to the same.
#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#import <QuartzCore/CAMediaTimingFunction.h>

#include <type_traits>

namespace {

template <typename Type>
Type* any();

// NOLINTBEGIN(cppcoreguidelines-macro-usage)
#define IS_VALUE(name, value) \
  static_assert(static_cast<long long>(name) == static_cast<long long>(value), "another " #name)
#define IS_CONSTANT(name, type) \
  static_assert(std::is_same_v<std::remove_const_t<decltype(name)>, type>, "another " #name)
/// What an expression with an object of that class gives.
#define GIVES(expression, ...)                                                                  \
  static_assert(std::is_same_v<std::remove_cv_t<std::remove_reference_t<decltype(expression)>>, \
                               __VA_ARGS__>,                                                    \
                "another " #expression)
// NOLINTEND(cppcoreguidelines-macro-usage)

static_assert(std::is_same_v<BOOL, bool>, "only for Apple silicon");
static_assert(std::is_same_v<NSRect, CGRect> && sizeof(NSRect) == 32);
static_assert(std::is_same_v<NSTimeInterval, double> && std::is_same_v<CGFloat, double>);

// Windows

IS_VALUE(NSWindowStyleMaskBorderless, 0);
IS_VALUE(NSWindowStyleMaskTitled, 1);
IS_VALUE(NSWindowStyleMaskClosable, 2);
IS_VALUE(NSBackingStoreBuffered, 2);
IS_VALUE(NSWindowCollectionBehaviorCanJoinAllSpaces, 1);
IS_VALUE(NSWindowCollectionBehaviorStationary, 16);
IS_VALUE(NSWindowCollectionBehaviorIgnoresCycle, 64);
IS_VALUE(NSWindowCollectionBehaviorFullScreenAuxiliary, 256);
IS_VALUE(NSWindowAnimationBehaviorNone, 2);
IS_VALUE(NSViewWidthSizable, 2);
IS_VALUE(NSViewHeightSizable, 16);
static_assert(sizeof(NSWindowStyleMask) == 8 && sizeof(NSBackingStoreType) == 8);
static_assert(sizeof(NSWindowCollectionBehavior) == 8 && sizeof(NSWindowAnimationBehavior) == 8);
GIVES(any<NSWindow>().level, NSInteger);
GIVES(any<NSWindow>().alphaValue, double);
GIVES(any<NSWindow>().opaque, bool);
GIVES(any<NSWindow>().hasShadow, bool);
GIVES(any<NSWindow>().ignoresMouseEvents, bool);
GIVES(any<NSWindow>().releasedWhenClosed, bool);
GIVES(any<NSWindow>().hidesOnDeactivate, bool);
GIVES(any<NSWindow>().visible, bool);
GIVES(any<NSWindow>().frame, NSRect);
GIVES(any<NSWindow>().canBecomeKeyWindow, bool);
GIVES([any<NSWindow>() makeFirstResponder:nil], bool);
GIVES([any<NSWindow>() setFrame:NSRect() display:NO], void);
GIVES([any<NSWindow>() invalidateShadow], void);
GIVES(any<NSAnimationContext>().duration, double);
GIVES(any<NSView>().autoresizingMask, NSAutoresizingMaskOptions);
GIVES(any<NSView>().bounds, NSRect);
GIVES([any<NSView>() drawRect:NSRect()], void);
GIVES([any<NSView>() accessibilityPerformPress], bool);

// The application and its events

IS_VALUE(NSApplicationActivationPolicyRegular, 0);
IS_VALUE(NSApplicationActivationPolicyAccessory, 1);
IS_VALUE(NSEventTypeLeftMouseDown, 1);
IS_VALUE(NSEventTypeKeyDown, 10);
IS_VALUE(NSEventTypeSystemDefined, 14);
IS_VALUE(NSEventTypeApplicationDefined, 15);
IS_VALUE(NSEventModifierFlagShift, 0x20000);
IS_VALUE(NSEventModifierFlagControl, 0x40000);
IS_VALUE(NSEventModifierFlagOption, 0x80000);
IS_VALUE(NSEventModifierFlagCommand, 0x100000);
static_assert(sizeof(NSEventType) == 8 && sizeof(NSEventModifierFlags) == 8);
static_assert(sizeof(NSApplicationActivationPolicy) == 8);
GIVES(any<NSEvent>().keyCode, unsigned short);
GIVES(any<NSEvent>().data1, NSInteger);
GIVES(any<NSEvent>().data2, NSInteger);
GIVES(NSEvent.mouseLocation, NSPoint);
GIVES(NSEvent.modifierFlags, NSEventModifierFlags);
GIVES([any<NSApplication>() setActivationPolicy:NSApplicationActivationPolicyAccessory], bool);
GIVES([any<NSApplication>() activateIgnoringOtherApps:YES], void);
GIVES([any<NSApplication>() postEvent:any<NSEvent>() atStart:YES], void);
static_assert(std::is_same_v<decltype(&NSBeep), void (*)()>);
IS_VALUE(NSKeyValueObservingOptionNew, 1);

// Controls and menus

IS_VALUE(NSControlStateValueOff, 0);
IS_VALUE(NSControlStateValueOn, 1);
IS_VALUE(NSControlSizeSmall, 1);
IS_VALUE(NSBezelStyleRounded, 1);
IS_VALUE(NSProgressIndicatorStyleSpinning, 1);
GIVES(NSSquareStatusItemLength, double);
GIVES(any<NSSlider>().minValue, double);
GIVES(any<NSSlider>().maxValue, double);
GIVES(any<NSSlider>().doubleValue, double);
GIVES(any<NSSlider>().continuous, bool);
GIVES(any<NSMenuItem>().enabled, bool);
GIVES(any<NSMenuItem>().state, NSInteger);
GIVES(any<NSMenu>().autoenablesItems, bool);
GIVES(any<NSProgressIndicator>().indeterminate, bool);

// Drawing

IS_VALUE(NSWindingRuleEvenOdd, 1);
IS_VALUE(NSGradientDrawsBeforeStartingLocation, 1);
IS_VALUE(NSGradientDrawsAfterEndingLocation, 2);
IS_VALUE(NSTextAlignmentLeft, 0);
IS_VALUE(NSLineBreakByTruncatingTail, 4);
GIVES(any<NSColor>().alphaComponent, double);
GIVES(any<NSBezierPath>().windingRule, NSWindingRule);
GIVES([any<NSString>() sizeWithAttributes:nil], NSSize);
GIVES(any<NSImage>().size, NSSize);
GIVES([any<NSAffineTransform>() scaleBy:1], void);

// Screens, other applications, announcements

GIVES(any<NSScreen>().frame, NSRect);
GIVES(any<NSScreen>().maximumPotentialExtendedDynamicRangeColorComponentValue, double);
GIVES(any<NSNumber>().unsignedIntValue, unsigned int);
GIVES(any<NSRunningApplication>().processIdentifier, int);
GIVES([any<NSWorkspace>() openURL:any<NSURL>()], bool);
GIVES([any<NSNotificationCenter>() removeObserver:any<NSObject>()], void);

}  // namespace
