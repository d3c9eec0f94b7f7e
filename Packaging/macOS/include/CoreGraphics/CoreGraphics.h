// The part of CoreGraphics that Brivane uses, for builds without the Mac's SDK; C++ and
// Objective-C++ only.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#if __has_include(<CoreGraphics/CGContext.h>)
#include <CoreGraphics/CGContext.h>
#endif

#ifdef __APPLE__
#include <mach/boolean.h>
#else
typedef int boolean_t;
#endif

#if defined(__cplusplus)
extern "C" {
#endif

enum CGError : int32_t { kCGErrorSuccess = 0 };

// Displays

typedef uint32_t CGDirectDisplayID;
CGError CGGetOnlineDisplayList(uint32_t maximum, CGDirectDisplayID* displays, uint32_t* count);
boolean_t CGDisplayIsBuiltin(CGDirectDisplayID display);
uint32_t CGDisplayVendorNumber(CGDirectDisplayID display);
uint32_t CGDisplayModelNumber(CGDirectDisplayID display);
uint32_t CGDisplaySerialNumber(CGDirectDisplayID display);

typedef float CGGammaValue;
uint32_t CGDisplayGammaTableCapacity(CGDirectDisplayID display);
CGError CGGetDisplayTransferByTable(CGDirectDisplayID display, uint32_t capacity, CGGammaValue* red,
                                    CGGammaValue* green, CGGammaValue* blue, uint32_t* sampleCount);
CGError CGSetDisplayTransferByTable(CGDirectDisplayID display, uint32_t tableSize,
                                    const CGGammaValue* red, const CGGammaValue* green,
                                    const CGGammaValue* blue);
void CGDisplayRestoreColorSyncSettings(void);

// Events

typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventTapProxy* CGEventTapProxy;
typedef uint16_t CGKeyCode;
typedef uint64_t CGEventMask;

enum CGEventType : uint32_t {
  kCGEventTapDisabledByTimeout = 0xFFFFFFFE,
  kCGEventTapDisabledByUserInput = 0xFFFFFFFF,
};
enum CGEventTapLocation : uint32_t { kCGHIDEventTap = 0 };
enum CGEventTapPlacement : uint32_t { kCGHeadInsertEventTap = 0 };
enum CGEventTapOptions : uint32_t { kCGEventTapOptionDefault = 0 };
enum CGEventSourceStateID : int32_t { kCGEventSourceStateCombinedSessionState = 0 };

typedef CGEventRef (*CGEventTapCallBack)(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                                         void* userInfo);
CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask events,
                               CGEventTapCallBack callback, void* userInfo) CF_RETURNS_RETAINED;
void CGEventTapEnable(CFMachPortRef tap, bool enable);
bool CGEventSourceKeyState(CGEventSourceStateID state, CGKeyCode key);

#if defined(__cplusplus)
}
#endif
