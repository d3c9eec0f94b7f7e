// Holds our own declarations of the Mac's C interfaces against the real ones. What stands here is
// what Brivane was written and tested with; compiled with the SDK of a Mac, every line that isn't
// true there is an error, and compiled elsewhere it holds our headers to the same.
#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <IOKit/IOKitLib.h>
#include <crt_externs.h>
#include <dispatch/dispatch.h>
#include <os/log.h>

#include <csignal>
#include <cstddef>
#include <type_traits>

namespace {

/// A function's type without the promise that it doesn't throw, which some headers make.
template <typename Function>
struct Plain;
template <typename Result, typename... Arguments>
struct Plain<Result (*)(Arguments...)> {
  using Type = Result (*)(Arguments...);
};
template <typename Result, typename... Arguments>
struct Plain<Result (*)(Arguments...) noexcept> {
  using Type = Result (*)(Arguments...);
};

// NOLINTBEGIN(cppcoreguidelines-macro-usage)
#define IS_FUNCTION(name, ...) \
  static_assert(std::is_same_v<Plain<decltype(&name)>::Type, __VA_ARGS__>, "another " #name)
#define IS_OBJECT(name, ...) \
  static_assert(std::is_same_v<decltype(name), __VA_ARGS__>, "another " #name)
#define IS_TYPE(name, ...) static_assert(std::is_same_v<name, __VA_ARGS__>, "another " #name)
#define IS_VALUE(name, value) \
  static_assert(static_cast<long long>(name) == static_cast<long long>(value), "another " #name)
// NOLINTEND(cppcoreguidelines-macro-usage)

// Sizes and layouts

IS_TYPE(CFIndex, long);
IS_TYPE(CFTypeID, unsigned long);
IS_TYPE(CFOptionFlags, unsigned long);
IS_TYPE(CFAbsoluteTime, double);
IS_TYPE(CFTypeRef, const void*);
IS_TYPE(Boolean, unsigned char);
IS_TYPE(OSStatus, int);
IS_TYPE(UniChar, unsigned short);
IS_TYPE(UniCharCount, unsigned long);
IS_TYPE(CGFloat, double);
IS_TYPE(CGGammaValue, float);
IS_TYPE(CGDirectDisplayID, unsigned int);
IS_TYPE(CGKeyCode, unsigned short);
IS_TYPE(CGEventMask, uint64_t);
IS_TYPE(io_object_t, unsigned int);
IS_TYPE(io_name_t, char[128]);
IS_TYPE(kern_return_t, int);
static_assert(sizeof(CFRange) == 16 && sizeof(CGRect) == 32 && sizeof(CGPoint) == 16);
static_assert(sizeof(CGError) == 4 && sizeof(CGEventType) == 4 && sizeof(CFNumberType) == 8);
static_assert(sizeof(EventHotKeyID) == 8 && offsetof(EventHotKeyID, id) == 4);
static_assert(sizeof(EventTypeSpec) == 8 && offsetof(EventTypeSpec, eventKind) == 4);
static_assert(sizeof(CFRunLoopTimerContext) == 40 && offsetof(CFRunLoopTimerContext, info) == 8 &&
              offsetof(CFRunLoopTimerContext, release) == 24);
static_assert(sizeof(CFArrayCallBacks) == 40 && sizeof(CFDictionaryKeyCallBacks) == 48 &&
              sizeof(CFDictionaryValueCallBacks) == 40);

// Constants

IS_VALUE(kCFStringEncodingUTF8, 0x08000100);
IS_VALUE(kCFNumberSInt64Type, 4);
IS_VALUE(kCFNumberFloat64Type, 6);
IS_VALUE(kCFURLPOSIXPathStyle, 0);
IS_VALUE(kCGErrorSuccess, 0);
IS_VALUE(kCGHIDEventTap, 0);
IS_VALUE(kCGHeadInsertEventTap, 0);
IS_VALUE(kCGEventTapOptionDefault, 0);
IS_VALUE(kCGEventTapDisabledByTimeout, 0xFFFFFFFE);
IS_VALUE(kCGEventTapDisabledByUserInput, 0xFFFFFFFF);
IS_VALUE(kCGEventSourceStateCombinedSessionState, 0);
IS_VALUE(kIORegistryIterateRecursively, 1);
IS_VALUE(KERN_SUCCESS, 0);
IS_VALUE(IO_OBJECT_NULL, 0);
IS_VALUE(noErr, 0);
IS_VALUE(kEventClassKeyboard, 0x6B657962);
IS_VALUE(kEventHotKeyPressed, 5);
IS_VALUE(kEventHotKeyReleased, 6);
IS_VALUE(kEventParamDirectObject, 0x2D2D2D2D);
IS_VALUE(typeEventHotKeyID, 0x686B6964);
IS_VALUE(kUCKeyActionDisplay, 3);
IS_VALUE(OS_LOG_TYPE_DEFAULT, 0);
IS_VALUE(QOS_CLASS_USER_INITIATED, 0x19);
IS_VALUE(QOS_CLASS_UTILITY, 0x11);
IS_VALUE(SIGTERM, 15);
IS_VALUE(SIGINT, 2);
IS_VALUE(SIGHUP, 1);
static_assert(kIOServicePlane[0] == 'I' && kIOServicePlane[9] == '\0');

// CoreFoundation

IS_FUNCTION(CFRetain, CFTypeRef (*)(CFTypeRef));
IS_FUNCTION(CFRelease, void (*)(CFTypeRef));
IS_FUNCTION(CFGetTypeID, CFTypeID (*)(CFTypeRef));
IS_FUNCTION(CFStringGetTypeID, CFTypeID (*)());
IS_FUNCTION(CFStringCreateWithBytes,
            CFStringRef (*)(CFAllocatorRef, const UInt8*, CFIndex, CFStringEncoding, Boolean));
IS_FUNCTION(CFStringCreateWithCharacters, CFStringRef (*)(CFAllocatorRef, const UniChar*, CFIndex));
IS_FUNCTION(CFStringGetLength, CFIndex (*)(CFStringRef));
IS_FUNCTION(CFStringGetBytes, CFIndex (*)(CFStringRef, CFRange, CFStringEncoding, UInt8, Boolean,
                                          UInt8*, CFIndex, CFIndex*));
IS_FUNCTION(CFBooleanGetTypeID, CFTypeID (*)());
IS_FUNCTION(CFBooleanGetValue, Boolean (*)(CFBooleanRef));
IS_FUNCTION(CFNumberGetTypeID, CFTypeID (*)());
IS_FUNCTION(CFNumberCreate, CFNumberRef (*)(CFAllocatorRef, CFNumberType, const void*));
IS_FUNCTION(CFNumberGetValue, Boolean (*)(CFNumberRef, CFNumberType, void*));
IS_FUNCTION(CFNumberIsFloatType, Boolean (*)(CFNumberRef));
IS_FUNCTION(CFDateGetTypeID, CFTypeID (*)());
IS_FUNCTION(CFDateCreate, CFDateRef (*)(CFAllocatorRef, CFAbsoluteTime));
IS_FUNCTION(CFDateGetAbsoluteTime, CFAbsoluteTime (*)(CFDateRef));
IS_FUNCTION(CFAbsoluteTimeGetCurrent, CFAbsoluteTime (*)());
IS_FUNCTION(CFDataGetTypeID, CFTypeID (*)());
IS_FUNCTION(CFDataCreate, CFDataRef (*)(CFAllocatorRef, const UInt8*, CFIndex));
IS_FUNCTION(CFDataGetLength, CFIndex (*)(CFDataRef));
IS_FUNCTION(CFDataGetBytePtr, const UInt8* (*)(CFDataRef));
IS_FUNCTION(CFArrayGetTypeID, CFTypeID (*)());
IS_FUNCTION(CFArrayCreate,
            CFArrayRef (*)(CFAllocatorRef, const void**, CFIndex, const CFArrayCallBacks*));
IS_FUNCTION(CFArrayGetCount, CFIndex (*)(CFArrayRef));
IS_FUNCTION(CFArrayGetValueAtIndex, const void* (*)(CFArrayRef, CFIndex));
IS_FUNCTION(CFDictionaryGetTypeID, CFTypeID (*)());
IS_FUNCTION(CFDictionaryCreate, CFDictionaryRef (*)(CFAllocatorRef, const void**, const void**,
                                                    CFIndex, const CFDictionaryKeyCallBacks*,
                                                    const CFDictionaryValueCallBacks*));
IS_FUNCTION(CFDictionaryGetCount, CFIndex (*)(CFDictionaryRef));
IS_FUNCTION(CFDictionaryGetKeysAndValues, void (*)(CFDictionaryRef, const void**, const void**));
IS_FUNCTION(CFURLCopyAbsoluteURL, CFURLRef (*)(CFURLRef));
IS_FUNCTION(CFURLCopyFileSystemPath, CFStringRef (*)(CFURLRef, CFURLPathStyle));
IS_FUNCTION(CFBundleGetMainBundle, CFBundleRef (*)());
IS_FUNCTION(CFBundleGetIdentifier, CFStringRef (*)(CFBundleRef));
IS_FUNCTION(CFBundleCopyExecutableURL, CFURLRef (*)(CFBundleRef));
IS_FUNCTION(CFBundleCopyResourcesDirectoryURL, CFURLRef (*)(CFBundleRef));
IS_FUNCTION(CFLocaleCopyPreferredLanguages, CFArrayRef (*)());
IS_FUNCTION(CFPreferencesCopyAppValue, CFPropertyListRef (*)(CFStringRef, CFStringRef));
IS_FUNCTION(CFPreferencesSetAppValue, void (*)(CFStringRef, CFPropertyListRef, CFStringRef));
IS_FUNCTION(CFPreferencesAppSynchronize, Boolean (*)(CFStringRef));
IS_FUNCTION(CFPreferencesCopyKeyList, CFArrayRef (*)(CFStringRef, CFStringRef, CFStringRef));
IS_FUNCTION(CFPreferencesCopyMultiple,
            CFDictionaryRef (*)(CFArrayRef, CFStringRef, CFStringRef, CFStringRef));
IS_FUNCTION(CFRunLoopGetMain, CFRunLoopRef (*)());
IS_FUNCTION(CFRunLoopRun, void (*)());
IS_FUNCTION(CFRunLoopStop, void (*)(CFRunLoopRef));
IS_FUNCTION(CFRunLoopAddSource, void (*)(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode));
IS_FUNCTION(CFRunLoopRemoveSource, void (*)(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode));
IS_FUNCTION(CFRunLoopTimerCreate,
            CFRunLoopTimerRef (*)(CFAllocatorRef, CFAbsoluteTime, CFTimeInterval, CFOptionFlags,
                                  CFIndex, CFRunLoopTimerCallBack, CFRunLoopTimerContext*));
IS_FUNCTION(CFRunLoopAddTimer, void (*)(CFRunLoopRef, CFRunLoopTimerRef, CFRunLoopMode));
IS_FUNCTION(CFRunLoopTimerInvalidate, void (*)(CFRunLoopTimerRef));
IS_TYPE(CFRunLoopTimerCallBack, void (*)(CFRunLoopTimerRef, void*));
IS_FUNCTION(CFMachPortCreateRunLoopSource,
            CFRunLoopSourceRef (*)(CFAllocatorRef, CFMachPortRef, CFIndex));
IS_FUNCTION(CFMachPortInvalidate, void (*)(CFMachPortRef));
IS_OBJECT(kCFAllocatorDefault, const CFAllocatorRef);
IS_OBJECT(kCFBooleanTrue, const CFBooleanRef);
IS_OBJECT(kCFBooleanFalse, const CFBooleanRef);
IS_OBJECT(kCFTypeArrayCallBacks, const CFArrayCallBacks);
IS_OBJECT(kCFTypeDictionaryKeyCallBacks, const CFDictionaryKeyCallBacks);
IS_OBJECT(kCFTypeDictionaryValueCallBacks, const CFDictionaryValueCallBacks);
IS_OBJECT(kCFPreferencesAnyHost, const CFStringRef);
IS_OBJECT(kCFPreferencesCurrentUser, const CFStringRef);
IS_OBJECT(kCFRunLoopCommonModes, const CFRunLoopMode);

// CoreGraphics

IS_FUNCTION(CGGetOnlineDisplayList, CGError (*)(uint32_t, CGDirectDisplayID*, uint32_t*));
IS_FUNCTION(CGDisplayIsBuiltin, boolean_t (*)(CGDirectDisplayID));
IS_FUNCTION(CGDisplayVendorNumber, uint32_t (*)(CGDirectDisplayID));
IS_FUNCTION(CGDisplayModelNumber, uint32_t (*)(CGDirectDisplayID));
IS_FUNCTION(CGDisplaySerialNumber, uint32_t (*)(CGDirectDisplayID));
IS_FUNCTION(CGDisplayGammaTableCapacity, uint32_t (*)(CGDirectDisplayID));
IS_FUNCTION(CGGetDisplayTransferByTable, CGError (*)(CGDirectDisplayID, uint32_t, CGGammaValue*,
                                                     CGGammaValue*, CGGammaValue*, uint32_t*));
IS_FUNCTION(CGSetDisplayTransferByTable,
            CGError (*)(CGDirectDisplayID, uint32_t, const CGGammaValue*, const CGGammaValue*,
                        const CGGammaValue*));
IS_FUNCTION(CGDisplayRestoreColorSyncSettings, void (*)());
IS_TYPE(CGEventTapCallBack, CGEventRef (*)(CGEventTapProxy, CGEventType, CGEventRef, void*));
IS_FUNCTION(CGEventTapCreate,
            CFMachPortRef (*)(CGEventTapLocation, CGEventTapPlacement, CGEventTapOptions,
                              CGEventMask, CGEventTapCallBack, void*));
IS_FUNCTION(CGEventTapEnable, void (*)(CFMachPortRef, bool));
IS_FUNCTION(CGEventSourceKeyState, bool (*)(CGEventSourceStateID, CGKeyCode));

// The I/O registry

IS_FUNCTION(IOObjectRelease, kern_return_t (*)(io_object_t));
IS_FUNCTION(IOObjectGetClass, kern_return_t (*)(io_object_t, char*));
IS_FUNCTION(IOIteratorNext, io_object_t (*)(io_iterator_t));
IS_FUNCTION(IORegistryGetRootEntry, io_registry_entry_t (*)(mach_port_t));
IS_FUNCTION(IORegistryEntryCreateIterator,
            kern_return_t (*)(io_registry_entry_t, const char*, IOOptionBits, io_iterator_t*));
IS_FUNCTION(IORegistryEntryGetName, kern_return_t (*)(io_registry_entry_t, char*));
IS_FUNCTION(IORegistryEntryGetParentEntry,
            kern_return_t (*)(io_registry_entry_t, const char*, io_registry_entry_t*));
IS_FUNCTION(IORegistryEntryCreateCFProperty,
            CFTypeRef (*)(io_registry_entry_t, CFStringRef, CFAllocatorRef, IOOptionBits));
IS_OBJECT(kIOMainPortDefault, const mach_port_t);

// Carbon, keyboard layouts, Accessibility

IS_TYPE(EventHandlerUPP, OSStatus (*)(EventHandlerCallRef, EventRef, void*));
IS_FUNCTION(GetApplicationEventTarget, EventTargetRef (*)());
IS_FUNCTION(InstallEventHandler, OSStatus (*)(EventTargetRef, EventHandlerUPP, ItemCount,
                                              const EventTypeSpec*, void*, EventHandlerRef*));
IS_FUNCTION(RemoveEventHandler, OSStatus (*)(EventHandlerRef));
IS_FUNCTION(GetEventKind, UInt32 (*)(EventRef));
IS_FUNCTION(GetEventParameter, OSStatus (*)(EventRef, EventParamName, EventParamType,
                                            EventParamType*, ByteCount, ByteCount*, void*));
IS_FUNCTION(RegisterEventHotKey, OSStatus (*)(UInt32, UInt32, EventHotKeyID, EventTargetRef,
                                              OptionBits, EventHotKeyRef*));
IS_FUNCTION(UnregisterEventHotKey, OSStatus (*)(EventHotKeyRef));
IS_FUNCTION(TISCopyCurrentKeyboardLayoutInputSource, TISInputSourceRef (*)());
IS_FUNCTION(TISGetInputSourceProperty, void* (*)(TISInputSourceRef, CFStringRef));
IS_FUNCTION(UCKeyTranslate,
            OSStatus (*)(const UCKeyboardLayout*, UInt16, UInt16, UInt32, UInt32, OptionBits,
                         UInt32*, UniCharCount, UniCharCount*, UniChar*));
IS_FUNCTION(LMGetKbdType, UInt8 (*)());
IS_FUNCTION(AXIsProcessTrusted, Boolean (*)());
IS_FUNCTION(AXIsProcessTrustedWithOptions, Boolean (*)(CFDictionaryRef));

// Dispatch and the C library

IS_FUNCTION(dispatch_queue_create, dispatch_queue_t (*)(const char*, dispatch_queue_attr_t));
IS_FUNCTION(dispatch_async_f, void (*)(dispatch_queue_t, void*, dispatch_function_t));
IS_FUNCTION(dispatch_sync_f, void (*)(dispatch_queue_t, void*, dispatch_function_t));
IS_FUNCTION(dispatch_source_create,
            dispatch_source_t (*)(dispatch_source_type_t, uintptr_t, uintptr_t, dispatch_queue_t));
IS_FUNCTION(dispatch_source_set_event_handler_f, void (*)(dispatch_source_t, dispatch_function_t));
IS_FUNCTION(dispatch_source_cancel, void (*)(dispatch_source_t));
IS_FUNCTION(dispatch_set_context, void (*)(dispatch_object_t, void*));
IS_FUNCTION(dispatch_resume, void (*)(dispatch_object_t));
IS_FUNCTION(dispatch_release, void (*)(dispatch_object_t));
IS_FUNCTION(_NSGetArgc, int* (*)());
IS_FUNCTION(_NSGetArgv, char*** (*)());

}  // namespace
