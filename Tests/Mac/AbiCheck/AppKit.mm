// Holds our own declarations of AppKit against the real ones: every message with the types of what
// goes in and comes out, and every constant with its number. Compiled with the kit of a Mac, a line
// that isn't true there is an error; compiled elsewhere it holds our headers to the same.
#import <AppKit/AppKit.h>

#include <cstddef>

#include "Tests/Mac/AbiCheck/AbiCheck.h"

// A message that a class doesn't declare is no more than a warning when its receiver is an id.
#pragma clang diagnostic error "-Wobjc-method-access"

namespace {

using abi::any;
using abi::Exactly;
using abi::valueOf;

// The application

IS_NUMBER(NSApplicationActivationPolicy, long);
IS_VALUE(NSApplicationActivationPolicyRegular, 0);
IS_VALUE(NSApplicationActivationPolicyAccessory, 1);
IS_SUBCLASS(NSApplication, NSResponder);
GIVES_OBJECT(NSApplication.sharedApplication, NSApplication*);
CAN_WRITE_OBJECT(NSApplication, delegate, setDelegate, id<NSApplicationDelegate>);
CAN_READ_OBJECT(NSApplication, effectiveAppearance, NSAppearance*);
GIVES([any<NSApplication>() setActivationPolicy:Exactly<NSApplicationActivationPolicy>()], BOOL);
GIVES([any<NSApplication>() activateIgnoringOtherApps:Exactly<BOOL>()], void);
GIVES([any<NSApplication>() run], void);
GIVES([any<NSApplication>() stop:valueOf<id>()], void);
GIVES([any<NSApplication>() terminate:valueOf<id>()], void);
GIVES([any<NSApplication>() postEvent:any<NSEvent>() atStart:Exactly<BOOL>()], void);
GIVES([valueOf<id<NSApplicationDelegate>>() applicationDidFinishLaunching:any<NSNotification>()],
      void);
GIVES([valueOf<id<NSApplicationDelegate>>() applicationWillTerminate:any<NSNotification>()], void);
GIVES([valueOf<id<NSApplicationDelegate>>() applicationShouldHandleReopen:any<NSApplication>()
                                                        hasVisibleWindows:Exactly<BOOL>()],
      BOOL);
GIVES([valueOf<id<NSApplicationDelegate>>()
          applicationSupportsSecureRestorableState:any<NSApplication>()],
      BOOL);
GIVES_OBJECT(NSApplicationDidChangeScreenParametersNotification, NSNotificationName);
IS_FUNCTION(NSBeep, void (*)());

IS_TYPE(NSAppearanceName, NSString*);
GIVES_OBJECT(NSAppearanceNameAqua, NSAppearanceName);
GIVES_OBJECT(NSAppearanceNameDarkAqua, NSAppearanceName);
IS_SUBCLASS(NSAppearance, NSObject);
GIVES_OBJECT([any<NSAppearance>()
                 bestMatchFromAppearancesWithNames:valueOf<NSArray<NSAppearanceName>*>()],
             NSAppearanceName);

// Events, and who answers them

IS_NUMBER(NSEventType, unsigned long);
IS_VALUE(NSEventTypeLeftMouseDown, 1);
IS_VALUE(NSEventTypeKeyDown, 10);
IS_VALUE(NSEventTypeSystemDefined, 14);
IS_VALUE(NSEventTypeApplicationDefined, 15);
IS_NUMBER(NSEventModifierFlags, unsigned long);
IS_VALUE(NSEventModifierFlagShift, 0x20000);
IS_VALUE(NSEventModifierFlagControl, 0x40000);
IS_VALUE(NSEventModifierFlagOption, 0x80000);
IS_VALUE(NSEventModifierFlagCommand, 0x100000);
IS_SUBCLASS(NSEvent, NSObject);
CONFORMS(NSEvent, NSCopying);
CAN_READ(NSEvent, type, NSEventType);
CAN_READ(NSEvent, modifierFlags, NSEventModifierFlags);
CAN_READ(NSEvent, keyCode, unsigned short);
CAN_READ(NSEvent, subtype, short);
CAN_READ(NSEvent, data1, NSInteger);
CAN_READ(NSEvent, data2, NSInteger);
GIVES(NSEvent.mouseLocation, NSPoint);
GIVES(NSEvent.modifierFlags, NSEventModifierFlags);
GIVES_OBJECT([NSEvent eventWithCGEvent:Exactly<CGEventRef>()], NSEvent*);
GIVES_OBJECT([NSEvent otherEventWithType:Exactly<NSEventType>()
                                location:Exactly<NSPoint>()
                           modifierFlags:Exactly<NSEventModifierFlags>()
                               timestamp:Exactly<NSTimeInterval>()
                            windowNumber:Exactly<NSInteger>()
                                 context:any<NSGraphicsContext>()
                                 subtype:Exactly<short>()
                                   data1:Exactly<NSInteger>()
                                   data2:Exactly<NSInteger>()],
             NSEvent*);

IS_SUBCLASS(NSResponder, NSObject);
CAN_READ(NSResponder, acceptsFirstResponder, BOOL);
GIVES([any<NSResponder>() becomeFirstResponder], BOOL);
GIVES([any<NSResponder>() resignFirstResponder], BOOL);
GIVES([any<NSResponder>() mouseDown:any<NSEvent>()], void);
GIVES([any<NSResponder>() keyDown:any<NSEvent>()], void);
GIVES([any<NSResponder>() performKeyEquivalent:any<NSEvent>()], BOOL);

// Windows

IS_TYPE(NSWindowLevel, NSInteger);
IS_NUMBER(NSWindowStyleMask, unsigned long);
IS_VALUE(NSWindowStyleMaskBorderless, 0);
IS_VALUE(NSWindowStyleMaskTitled, 1);
IS_VALUE(NSWindowStyleMaskClosable, 2);
IS_NUMBER(NSBackingStoreType, unsigned long);
IS_VALUE(NSBackingStoreBuffered, 2);
IS_NUMBER(NSWindowCollectionBehavior, unsigned long);
IS_VALUE(NSWindowCollectionBehaviorCanJoinAllSpaces, 1);
IS_VALUE(NSWindowCollectionBehaviorStationary, 16);
IS_VALUE(NSWindowCollectionBehaviorIgnoresCycle, 64);
IS_VALUE(NSWindowCollectionBehaviorFullScreenAuxiliary, 256);
IS_NUMBER(NSWindowAnimationBehavior, long);
IS_VALUE(NSWindowAnimationBehaviorDefault, 0);
IS_VALUE(NSWindowAnimationBehaviorNone, 2);
IS_SUBCLASS(NSWindow, NSResponder);
CONFORMS(NSWindow, NSAnimatablePropertyContainer);
GIVES_OBJECT([any<NSWindow>() animator], NSWindow*);
GIVES_OBJECT([valueOf<id<NSAnimatablePropertyContainer>>() animator], id);
GIVES_OBJECT([[NSWindow alloc] initWithContentRect:Exactly<NSRect>()
                                         styleMask:Exactly<NSWindowStyleMask>()
                                           backing:Exactly<NSBackingStoreType>()
                                             defer:Exactly<BOOL>()],
             NSWindow*);
CAN_WRITE_OBJECT(NSWindow, delegate, setDelegate, id<NSWindowDelegate>);
GIVES([valueOf<id<NSWindowDelegate>>() windowWillClose:any<NSNotification>()], void);
GIVES([valueOf<id<NSWindowDelegate>>() windowDidResignKey:any<NSNotification>()], void);
CAN_WRITE_OBJECT(NSWindow, title, setTitle, NSString*);
CAN_WRITE_OBJECT(NSWindow, contentView, setContentView, NSView*);
CAN_WRITE(NSWindow, opaque, setOpaque, BOOL);
GIVES([any<NSWindow>() isOpaque], BOOL);
CAN_WRITE_OBJECT(NSWindow, backgroundColor, setBackgroundColor, NSColor*);
CAN_WRITE(NSWindow, hasShadow, setHasShadow, BOOL);
CAN_WRITE(NSWindow, ignoresMouseEvents, setIgnoresMouseEvents, BOOL);
CAN_WRITE(NSWindow, releasedWhenClosed, setReleasedWhenClosed, BOOL);
GIVES([any<NSWindow>() isReleasedWhenClosed], BOOL);
CAN_WRITE(NSWindow, hidesOnDeactivate, setHidesOnDeactivate, BOOL);
CAN_WRITE(NSWindow, level, setLevel, NSWindowLevel);
CAN_WRITE(NSWindow, collectionBehavior, setCollectionBehavior, NSWindowCollectionBehavior);
CAN_WRITE(NSWindow, animationBehavior, setAnimationBehavior, NSWindowAnimationBehavior);
CAN_WRITE(NSWindow, alphaValue, setAlphaValue, CGFloat);
CAN_WRITE(NSWindow, restorable, setRestorable, BOOL);
GIVES([any<NSWindow>() isRestorable], BOOL);
CAN_READ(NSWindow, frame, NSRect);
CAN_READ(NSWindow, visible, BOOL);
GIVES([any<NSWindow>() isVisible], BOOL);
CAN_READ(NSWindow, canBecomeKeyWindow, BOOL);
CAN_READ(NSWindow, canBecomeMainWindow, BOOL);
CAN_READ_OBJECT(NSWindow, firstResponder, NSResponder*);
GIVES([any<NSWindow>() makeFirstResponder:any<NSResponder>()], BOOL);
GIVES([any<NSWindow>() setFrame:Exactly<NSRect>() display:Exactly<BOOL>()], void);
GIVES([any<NSWindow>() center], void);
GIVES([any<NSWindow>() orderFrontRegardless], void);
GIVES([any<NSWindow>() orderOut:valueOf<id>()], void);
GIVES([any<NSWindow>() makeKeyAndOrderFront:valueOf<id>()], void);
GIVES([any<NSWindow>() close], void);
GIVES([any<NSWindow>() invalidateShadow], void);

IS_SUBCLASS(NSAnimationContext, NSObject);
GIVES([NSAnimationContext runAnimationGroup:valueOf<void (^)(NSAnimationContext*)>()
                          completionHandler:valueOf<void (^)(void)>()],
      void);
CAN_WRITE(NSAnimationContext, duration, setDuration, NSTimeInterval);
CAN_WRITE_OBJECT(NSAnimationContext, timingFunction, setTimingFunction, CAMediaTimingFunction*);

// Views

IS_NUMBER(NSAutoresizingMaskOptions, unsigned long);
IS_VALUE(NSViewWidthSizable, 2);
IS_VALUE(NSViewHeightSizable, 16);
IS_SUBCLASS(NSView, NSResponder);
GIVES_OBJECT([[NSView alloc] initWithFrame:Exactly<NSRect>()], NSView*);
GIVES_OBJECT([[NSView alloc] initWithCoder:any<NSCoder>()], NSView*);
CAN_WRITE(NSView, frame, setFrame, NSRect);
CAN_READ(NSView, bounds, NSRect);
CAN_WRITE(NSView, autoresizingMask, setAutoresizingMask, NSAutoresizingMaskOptions);
CAN_WRITE(NSView, needsDisplay, setNeedsDisplay, BOOL);
CAN_READ_OBJECT(NSView, window, NSWindow*);
CAN_WRITE_OBJECT(NSView, toolTip, setToolTip, NSString*);
GIVES([any<NSView>() addSubview:any<NSView>()], void);
GIVES([any<NSView>() removeFromSuperview], void);
GIVES([any<NSView>() drawRect:Exactly<NSRect>()], void);

IS_TYPE(NSAccessibilityRole, NSString*);
GIVES_OBJECT(NSAccessibilityButtonRole, NSAccessibilityRole);
GIVES([any<NSView>() setAccessibilityElement:Exactly<BOOL>()], void);
GIVES([any<NSView>() setAccessibilityRole:valueOf<NSAccessibilityRole>()], void);
GIVES([any<NSView>() setAccessibilityLabel:any<NSString>()], void);
GIVES_OBJECT([any<NSView>() accessibilityLabel], NSString*);
GIVES_OBJECT([any<NSView>() accessibilityValue], id);
GIVES([any<NSView>() accessibilityPerformPress], BOOL);

// Controls

IS_TYPE(NSControlStateValue, NSInteger);
IS_VALUE(NSControlStateValueOff, 0);
GIVES(NSControlStateValueOff, NSControlStateValue);
IS_VALUE(NSControlStateValueOn, 1);
GIVES(NSControlStateValueOn, NSControlStateValue);
IS_NUMBER(NSControlSize, unsigned long);
IS_VALUE(NSControlSizeRegular, 0);
IS_VALUE(NSControlSizeSmall, 1);
IS_SUBCLASS(NSControl, NSView);
CAN_WRITE_OBJECT(NSControl, target, setTarget, id);
CAN_WRITE(NSControl, action, setAction, SEL);
CAN_WRITE(NSControl, continuous, setContinuous, BOOL);
GIVES([any<NSControl>() isContinuous], BOOL);
CAN_WRITE(NSControl, doubleValue, setDoubleValue, double);
CAN_WRITE_OBJECT(NSControl, stringValue, setStringValue, NSString*);
CAN_WRITE_OBJECT(NSControl, font, setFont, NSFont*);

IS_SUBCLASS(NSSlider, NSControl);
GIVES_OBJECT([NSSlider sliderWithValue:Exactly<double>()
                              minValue:Exactly<double>()
                              maxValue:Exactly<double>()
                                target:valueOf<id>()
                                action:Exactly<SEL>()],
             NSSlider*);
CAN_WRITE(NSSlider, minValue, setMinValue, double);
CAN_WRITE(NSSlider, maxValue, setMaxValue, double);

IS_SUBCLASS(NSTextField, NSControl);
GIVES_OBJECT([NSTextField labelWithString:any<NSString>()], NSTextField*);

IS_NUMBER(NSBezelStyle, unsigned long);
IS_VALUE(NSBezelStyleRounded, 1);
IS_SUBCLASS(NSButton, NSControl);
GIVES_OBJECT([NSButton buttonWithTitle:any<NSString>() target:valueOf<id>() action:Exactly<SEL>()],
             NSButton*);
CAN_WRITE_OBJECT(NSButton, title, setTitle, NSString*);
CAN_WRITE_OBJECT(NSButton, image, setImage, NSImage*);
CAN_WRITE(NSButton, bezelStyle, setBezelStyle, NSBezelStyle);

IS_NUMBER(NSProgressIndicatorStyle, unsigned long);
IS_VALUE(NSProgressIndicatorStyleSpinning, 1);
IS_SUBCLASS(NSProgressIndicator, NSView);
CAN_WRITE(NSProgressIndicator, style, setStyle, NSProgressIndicatorStyle);
CAN_WRITE(NSProgressIndicator, controlSize, setControlSize, NSControlSize);
CAN_WRITE(NSProgressIndicator, indeterminate, setIndeterminate, BOOL);
GIVES([any<NSProgressIndicator>() isIndeterminate], BOOL);
GIVES([any<NSProgressIndicator>() startAnimation:valueOf<id>()], void);

// Menus and the menu bar

IS_SUBCLASS(NSMenu, NSObject);
CONFORMS(NSMenu, NSCopying);
GIVES_OBJECT([[NSMenu alloc] initWithTitle:any<NSString>()], NSMenu*);
CAN_WRITE_OBJECT(NSMenu, delegate, setDelegate, id<NSMenuDelegate>);
GIVES([valueOf<id<NSMenuDelegate>>() menuWillOpen:any<NSMenu>()], void);
GIVES([valueOf<id<NSMenuDelegate>>() menuDidClose:any<NSMenu>()], void);
CAN_WRITE(NSMenu, autoenablesItems, setAutoenablesItems, BOOL);
GIVES([any<NSMenu>() addItem:any<NSMenuItem>()], void);
GIVES([any<NSMenu>() removeAllItems], void);
GIVES([any<NSMenu>() popUpMenuPositioningItem:any<NSMenuItem>()
                                   atLocation:Exactly<NSPoint>()
                                       inView:any<NSView>()],
      BOOL);
GIVES([any<NSMenu>() cancelTrackingWithoutAnimation], void);

IS_SUBCLASS(NSMenuItem, NSObject);
CONFORMS(NSMenuItem, NSCopying);
GIVES_OBJECT([NSMenuItem separatorItem], NSMenuItem*);
GIVES_OBJECT([[NSMenuItem alloc] initWithTitle:any<NSString>()
                                        action:Exactly<SEL>()
                                 keyEquivalent:any<NSString>()],
             NSMenuItem*);
CAN_WRITE_OBJECT(NSMenuItem, title, setTitle, NSString*);
CAN_WRITE_OBJECT(NSMenuItem, attributedTitle, setAttributedTitle, NSAttributedString*);
CAN_WRITE(NSMenuItem, enabled, setEnabled, BOOL);
GIVES([any<NSMenuItem>() isEnabled], BOOL);
CAN_WRITE(NSMenuItem, state, setState, NSControlStateValue);
CAN_WRITE_OBJECT(NSMenuItem, target, setTarget, id);
CAN_WRITE_OBJECT(NSMenuItem, view, setView, NSView*);
CAN_WRITE(NSMenuItem, tag, setTag, NSInteger);

// A number that may be no constant expression, but can be worked out.
static_assert(__builtin_constant_p(1) ? NSSquareStatusItemLength == -2.0 : false);
GIVES(NSSquareStatusItemLength, CGFloat);
IS_SUBCLASS(NSStatusBarButton, NSButton);
IS_SUBCLASS(NSStatusItem, NSObject);
CAN_READ_OBJECT(NSStatusItem, button, NSStatusBarButton*);
CAN_WRITE_OBJECT(NSStatusItem, menu, setMenu, NSMenu*);
CAN_WRITE_OBJECT(NSStatusItem, autosaveName, setAutosaveName, NSString*);
IS_SUBCLASS(NSStatusBar, NSObject);
GIVES_OBJECT(NSStatusBar.systemStatusBar, NSStatusBar*);
CAN_READ(NSStatusBar, thickness, CGFloat);
GIVES_OBJECT([any<NSStatusBar>() statusItemWithLength:Exactly<CGFloat>()], NSStatusItem*);
GIVES([any<NSStatusBar>() removeStatusItem:any<NSStatusItem>()], void);

// Colours and pictures

IS_SUBCLASS(NSColorSpace, NSObject);
GIVES_OBJECT(NSColorSpace.sRGBColorSpace, NSColorSpace*);
IS_SUBCLASS(NSColor, NSObject);
CONFORMS(NSColor, NSCopying);
GIVES_OBJECT([NSColor colorWithSRGBRed:Exactly<CGFloat>()
                                 green:Exactly<CGFloat>()
                                  blue:Exactly<CGFloat>()
                                 alpha:Exactly<CGFloat>()],
             NSColor*);
GIVES_OBJECT(NSColor.clearColor, NSColor*);
GIVES_OBJECT(NSColor.labelColor, NSColor*);
GIVES_OBJECT(NSColor.secondaryLabelColor, NSColor*);
GIVES_OBJECT(NSColor.tertiaryLabelColor, NSColor*);
GIVES_OBJECT(NSColor.controlAccentColor, NSColor*);
GIVES_OBJECT(NSColor.separatorColor, NSColor*);
GIVES_OBJECT(NSColor.controlBackgroundColor, NSColor*);
GIVES_OBJECT([any<NSColor>() colorUsingColorSpace:any<NSColorSpace>()], NSColor*);
GIVES_OBJECT([any<NSColor>() colorWithAlphaComponent:Exactly<CGFloat>()], NSColor*);
CAN_READ(NSColor, alphaComponent, CGFloat);
GIVES([any<NSColor>() setFill], void);

IS_SUBCLASS(NSImageSymbolConfiguration, NSObject);
CONFORMS(NSImageSymbolConfiguration, NSCopying);
GIVES_OBJECT([NSImageSymbolConfiguration configurationWithPointSize:Exactly<CGFloat>()
                                                             weight:Exactly<NSFontWeight>()],
             NSImageSymbolConfiguration*);
GIVES_OBJECT([NSImageSymbolConfiguration
                 configurationWithPaletteColors:valueOf<NSArray<NSColor*>*>()],
             NSImageSymbolConfiguration*);
GIVES_OBJECT([any<NSImageSymbolConfiguration>()
                 configurationByApplyingConfiguration:any<NSImageSymbolConfiguration>()],
             NSImageSymbolConfiguration*);
IS_SUBCLASS(NSImage, NSObject);
CONFORMS(NSImage, NSCopying);
GIVES_OBJECT([NSImage imageWithSystemSymbolName:any<NSString>()
                       accessibilityDescription:any<NSString>()],
             NSImage*);
GIVES_OBJECT([NSImage imageWithSize:Exactly<NSSize>()
                            flipped:Exactly<BOOL>()
                     drawingHandler:valueOf<BOOL (^)(NSRect)>()],
             NSImage*);
GIVES_OBJECT([any<NSImage>() imageWithSymbolConfiguration:any<NSImageSymbolConfiguration>()],
             NSImage*);
CAN_WRITE(NSImage, size, setSize, NSSize);
GIVES([any<NSImage>() drawInRect:Exactly<NSRect>()], void);

// Drawing

IS_SUBCLASS(NSGraphicsContext, NSObject);
GIVES([NSGraphicsContext saveGraphicsState], void);
GIVES([NSGraphicsContext restoreGraphicsState], void);
GIVES([any<NSAffineTransform>() concat], void);

IS_NUMBER(NSWindingRule, unsigned long);
IS_VALUE(NSWindingRuleNonZero, 0);
IS_VALUE(NSWindingRuleEvenOdd, 1);
IS_SUBCLASS(NSBezierPath, NSObject);
CONFORMS(NSBezierPath, NSCopying);
GIVES_OBJECT([NSBezierPath bezierPath], NSBezierPath*);
GIVES([any<NSBezierPath>() moveToPoint:Exactly<NSPoint>()], void);
GIVES([any<NSBezierPath>() lineToPoint:Exactly<NSPoint>()], void);
GIVES([any<NSBezierPath>() curveToPoint:Exactly<NSPoint>()
                          controlPoint1:Exactly<NSPoint>()
                          controlPoint2:Exactly<NSPoint>()],
      void);
GIVES([any<NSBezierPath>() closePath], void);
GIVES([any<NSBezierPath>() appendBezierPath:any<NSBezierPath>()], void);
GIVES([any<NSBezierPath>() appendBezierPathWithRect:Exactly<NSRect>()], void);
CAN_WRITE(NSBezierPath, windingRule, setWindingRule, NSWindingRule);
GIVES([any<NSBezierPath>() fill], void);
GIVES([any<NSBezierPath>() addClip], void);

IS_NUMBER(NSGradientDrawingOptions, unsigned long);
IS_VALUE(NSGradientDrawsBeforeStartingLocation, 1);
IS_VALUE(NSGradientDrawsAfterEndingLocation, 2);
IS_SUBCLASS(NSGradient, NSObject);
CONFORMS(NSGradient, NSCopying);
GIVES_OBJECT([[NSGradient alloc] initWithColors:valueOf<NSArray<NSColor*>*>()
                                    atLocations:Exactly<const CGFloat*>()
                                     colorSpace:any<NSColorSpace>()],
             NSGradient*);
GIVES([any<NSGradient>() drawFromPoint:Exactly<NSPoint>()
                               toPoint:Exactly<NSPoint>()
                               options:Exactly<NSGradientDrawingOptions>()],
      void);
GIVES([any<NSGradient>() drawFromCenter:Exactly<NSPoint>()
                                 radius:Exactly<CGFloat>()
                               toCenter:Exactly<NSPoint>()
                                 radius:Exactly<CGFloat>()
                                options:Exactly<NSGradientDrawingOptions>()],
      void);

IS_TYPE(NSFontWeight, CGFloat);
GIVES(NSFontWeightRegular, CGFloat);
GIVES(NSFontWeightMedium, CGFloat);
GIVES(NSFontWeightSemibold, CGFloat);
IS_SUBCLASS(NSFont, NSObject);
CONFORMS(NSFont, NSCopying);
GIVES_OBJECT([NSFont systemFontOfSize:Exactly<CGFloat>()], NSFont*);
GIVES_OBJECT([NSFont systemFontOfSize:Exactly<CGFloat>() weight:Exactly<NSFontWeight>()], NSFont*);
GIVES_OBJECT([NSFont monospacedDigitSystemFontOfSize:Exactly<CGFloat>()
                                              weight:Exactly<NSFontWeight>()],
             NSFont*);
GIVES_OBJECT([NSFont menuFontOfSize:Exactly<CGFloat>()], NSFont*);

GIVES_OBJECT(NSFontAttributeName, NSAttributedStringKey);
GIVES_OBJECT(NSForegroundColorAttributeName, NSAttributedStringKey);
GIVES_OBJECT(NSParagraphStyleAttributeName, NSAttributedStringKey);
IS_NUMBER(NSTextAlignment, long);
IS_VALUE(NSTextAlignmentLeft, 0);
#if defined(__x86_64__)
IS_VALUE(NSTextAlignmentRight, 1);
IS_VALUE(NSTextAlignmentCenter, 2);
#else
IS_VALUE(NSTextAlignmentCenter, 1);
IS_VALUE(NSTextAlignmentRight, 2);
#endif
IS_VALUE(NSTextAlignmentNatural, 4);
IS_NUMBER(NSLineBreakMode, unsigned long);
IS_VALUE(NSLineBreakByTruncatingTail, 4);
IS_SUBCLASS(NSParagraphStyle, NSObject);
CONFORMS(NSParagraphStyle, NSCopying);
IS_SUBCLASS(NSMutableParagraphStyle, NSParagraphStyle);
CAN_WRITE(NSMutableParagraphStyle, alignment, setAlignment, NSTextAlignment);
CAN_WRITE(NSMutableParagraphStyle, lineBreakMode, setLineBreakMode, NSLineBreakMode);
using Attributes = NSDictionary<NSAttributedStringKey, id>;
GIVES([any<NSString>() sizeWithAttributes:any<Attributes>()], NSSize);
GIVES([any<NSString>() drawInRect:Exactly<NSRect>() withAttributes:any<Attributes>()], void);

// Screens, other applications, announcements

IS_TYPE(NSDeviceDescriptionKey, NSString*);
IS_SUBCLASS(NSScreen, NSObject);
GIVES_OBJECT(NSScreen.screens, NSArray<NSScreen*>*);
GIVES_OBJECT(NSScreen.mainScreen, NSScreen*);
CAN_READ(NSScreen, frame, NSRect);
using Description = NSDictionary<NSDeviceDescriptionKey, id>;
CAN_READ_OBJECT(NSScreen, deviceDescription, Description*);
CAN_READ_OBJECT(NSScreen, localizedName, NSString*);
CAN_READ(NSScreen, maximumPotentialExtendedDynamicRangeColorComponentValue, CGFloat);

IS_SUBCLASS(NSWorkspace, NSObject);
GIVES_OBJECT(NSWorkspace.sharedWorkspace, NSWorkspace*);
CAN_READ_OBJECT(NSWorkspace, notificationCenter, NSNotificationCenter*);
GIVES([any<NSWorkspace>() openURL:any<NSURL>()], BOOL);
GIVES_OBJECT(NSWorkspaceDidWakeNotification, NSNotificationName);
GIVES_OBJECT(NSWorkspaceScreensDidWakeNotification, NSNotificationName);
IS_SUBCLASS(NSRunningApplication, NSObject);
GIVES_OBJECT([NSRunningApplication runningApplicationsWithBundleIdentifier:any<NSString>()],
             NSArray<NSRunningApplication*>*);
CAN_READ(NSRunningApplication, processIdentifier, int);

}  // namespace
