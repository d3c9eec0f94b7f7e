// The part of the Carbon event manager and of the keyboard layouts that Brivane uses, for builds
// without the Mac's SDK; C++ and Objective-C++ only.
#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <CoreServices/CoreServices.h>

typedef struct OpaqueEventRef* EventRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct EventHotKeyRef_* EventHotKeyRef;
typedef OSType EventParamName;
typedef OSType EventParamType;
typedef struct EventTypeSpec {
  OSType eventClass;
  UInt32 eventKind;
} EventTypeSpec;
typedef struct EventHotKeyID {
  OSType signature;
  UInt32 id;
} EventHotKeyID;
typedef OSStatus (*EventHandlerProcPtr)(EventHandlerCallRef call, EventRef event, void* userData);
typedef EventHandlerProcPtr EventHandlerUPP;

enum { kEventClassKeyboard = 0x6B657962 /* 'keyb' */ };
enum { kEventHotKeyPressed = 5, kEventHotKeyReleased = 6 };
enum { kEventParamDirectObject = 0x2D2D2D2D /* '----' */ };
enum { typeEventHotKeyID = 0x686B6964 /* 'hkid' */ };

#if defined(__cplusplus)
extern "C" {
#endif

EventTargetRef GetApplicationEventTarget(void);
EventTargetRef GetEventDispatcherTarget(void);
OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* userData,
                             EventHandlerRef* installed);
OSStatus RemoveEventHandler(EventHandlerRef handler);
UInt32 GetEventKind(EventRef event);
OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desiredType,
                           EventParamType* actualType, ByteCount bufferSize, ByteCount* actualSize,
                           void* data);
OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID hotKey,
                             EventTargetRef target, OptionBits options, EventHotKeyRef* registered);
OSStatus UnregisterEventHotKey(EventHotKeyRef hotKey);

typedef struct __TISInputSource* TISInputSourceRef;
extern const CFStringRef kTISPropertyUnicodeKeyLayoutData;
TISInputSourceRef TISCopyCurrentKeyboardLayoutInputSource(void) CF_RETURNS_RETAINED;
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key);

UInt8 LMGetKbdType(void);

#if defined(__cplusplus)
}
#endif
