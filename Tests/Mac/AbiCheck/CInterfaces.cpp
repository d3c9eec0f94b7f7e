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
#include <dlfcn.h>
#include <os/log.h>

#include <csignal>
#include <cstddef>
#include <ctime>
#include <string_view>

#include "Tests/Mac/AbiCheck/AbiCheck.h"

namespace {

// Numbers

IS_TYPE(Boolean, unsigned char);
IS_TYPE(UInt8, unsigned char);
IS_TYPE(SInt8, signed char);
IS_TYPE(UInt16, unsigned short);
IS_TYPE(SInt16, short);
IS_TYPE(UInt32, unsigned int);
IS_TYPE(SInt32, int);
static_assert(sizeof(UInt64) == 8 && UInt64(-1) > 0);
static_assert(sizeof(SInt64) == 8 && SInt64(-1) < 0);
IS_TYPE(OSStatus, int);
IS_TYPE(OSType, unsigned int);
IS_TYPE(FourCharCode, unsigned int);
IS_TYPE(OptionBits, unsigned int);
IS_TYPE(UniChar, unsigned short);
IS_TYPE(UniCharCount, unsigned long);
IS_TYPE(ByteCount, unsigned long);
IS_TYPE(ItemCount, unsigned long);
IS_TYPE(CFIndex, long);
IS_TYPE(CFTypeID, unsigned long);
IS_TYPE(CFOptionFlags, unsigned long);
IS_TYPE(CFHashCode, unsigned long);
IS_TYPE(CFTimeInterval, double);
IS_TYPE(CFAbsoluteTime, double);
IS_TYPE(CFStringEncoding, unsigned int);
IS_TYPE(CGFloat, double);
IS_TYPE(CGGammaValue, float);
IS_TYPE(CGDirectDisplayID, unsigned int);
IS_TYPE(CGKeyCode, unsigned short);
IS_TYPE(CGEventMask, uint64_t);
IS_TYPE(boolean_t, int);
IS_TYPE(kern_return_t, int);
IS_TYPE(mach_port_t, unsigned int);
IS_TYPE(io_object_t, unsigned int);
IS_TYPE(io_iterator_t, unsigned int);
IS_TYPE(io_registry_entry_t, unsigned int);
IS_TYPE(io_service_t, unsigned int);
IS_TYPE(io_name_t, char[128]);
IS_TYPE(IOReturn, int);
IS_TYPE(IOOptionBits, unsigned int);
IS_TYPE(EventParamName, unsigned int);
IS_TYPE(EventParamType, unsigned int);
IS_NUMBER(CFStringBuiltInEncodings, unsigned int);
IS_NUMBER(CFNumberType, long);
IS_NUMBER(CFURLPathStyle, long);
IS_NUMBER(CGError, int);
IS_NUMBER(CGEventType, unsigned int);
IS_NUMBER(CGEventTapLocation, unsigned int);
IS_NUMBER(CGEventTapPlacement, unsigned int);
IS_NUMBER(CGEventTapOptions, unsigned int);
IS_NUMBER(CGEventSourceStateID, int);
IS_NUMBER(os_log_type_t, unsigned char);

// What only the system looks into

IS_TYPE(CFTypeRef, const void*);
IS_TYPE(CFPropertyListRef, const void*);
IS_CONSTANT_REFERENCE(CFAllocatorRef);
IS_CONSTANT_REFERENCE(CFArrayRef);
IS_CONSTANT_REFERENCE(CFBooleanRef);
IS_CONSTANT_REFERENCE(CFDataRef);
IS_CONSTANT_REFERENCE(CFDateRef);
IS_CONSTANT_REFERENCE(CFDictionaryRef);
IS_CONSTANT_REFERENCE(CFNumberRef);
IS_CONSTANT_REFERENCE(CFStringRef);
IS_CONSTANT_REFERENCE(CFURLRef);
IS_TYPE(CFRunLoopMode, CFStringRef);
IS_REFERENCE(CFBundleRef);
IS_REFERENCE(CFMachPortRef);
IS_REFERENCE(CFRunLoopRef);
IS_REFERENCE(CFRunLoopSourceRef);
IS_REFERENCE(CFRunLoopTimerRef);
IS_REFERENCE(CGEventRef);
IS_REFERENCE(CGEventTapProxy);
IS_REFERENCE(EventRef);
IS_REFERENCE(EventTargetRef);
IS_REFERENCE(EventHandlerRef);
IS_REFERENCE(EventHandlerCallRef);
IS_REFERENCE(EventHotKeyRef);
IS_REFERENCE(TISInputSourceRef);
static_assert(std::is_class_v<UCKeyboardLayout>);
IS_REFERENCE(os_log_t);

// Structures

IS_STRUCT(CFRange, 16);
HAS_FIELD(CFRange, location, 0, CFIndex);
HAS_FIELD(CFRange, length, 8, CFIndex);
IS_STRUCT(CGPoint, 16);
HAS_FIELD(CGPoint, x, 0, CGFloat);
HAS_FIELD(CGPoint, y, 8, CGFloat);
IS_STRUCT(CGSize, 16);
HAS_FIELD(CGSize, width, 0, CGFloat);
HAS_FIELD(CGSize, height, 8, CGFloat);
IS_STRUCT(CGRect, 32);
HAS_FIELD(CGRect, origin, 0, CGPoint);
HAS_FIELD(CGRect, size, 16, CGSize);
IS_STRUCT(EventTypeSpec, 8);
HAS_FIELD(EventTypeSpec, eventClass, 0, OSType);
HAS_FIELD(EventTypeSpec, eventKind, 4, UInt32);
IS_STRUCT(EventHotKeyID, 8);
HAS_FIELD(EventHotKeyID, signature, 0, OSType);
HAS_FIELD(EventHotKeyID, id, 4, UInt32);

IS_TYPE(CFArrayRetainCallBack, const void* (*)(CFAllocatorRef, const void*));
IS_TYPE(CFArrayReleaseCallBack, void (*)(CFAllocatorRef, const void*));
IS_TYPE(CFArrayCopyDescriptionCallBack, CFStringRef (*)(const void*));
IS_TYPE(CFArrayEqualCallBack, Boolean (*)(const void*, const void*));
IS_STRUCT(CFArrayCallBacks, 40);
HAS_FIELD(CFArrayCallBacks, version, 0, CFIndex);
HAS_FIELD(CFArrayCallBacks, retain, 8, CFArrayRetainCallBack);
HAS_FIELD(CFArrayCallBacks, release, 16, CFArrayReleaseCallBack);
HAS_FIELD(CFArrayCallBacks, copyDescription, 24, CFArrayCopyDescriptionCallBack);
HAS_FIELD(CFArrayCallBacks, equal, 32, CFArrayEqualCallBack);

IS_TYPE(CFDictionaryRetainCallBack, const void* (*)(CFAllocatorRef, const void*));
IS_TYPE(CFDictionaryReleaseCallBack, void (*)(CFAllocatorRef, const void*));
IS_TYPE(CFDictionaryCopyDescriptionCallBack, CFStringRef (*)(const void*));
IS_TYPE(CFDictionaryEqualCallBack, Boolean (*)(const void*, const void*));
IS_TYPE(CFDictionaryHashCallBack, CFHashCode (*)(const void*));
IS_STRUCT(CFDictionaryKeyCallBacks, 48);
HAS_FIELD(CFDictionaryKeyCallBacks, version, 0, CFIndex);
HAS_FIELD(CFDictionaryKeyCallBacks, retain, 8, CFDictionaryRetainCallBack);
HAS_FIELD(CFDictionaryKeyCallBacks, release, 16, CFDictionaryReleaseCallBack);
HAS_FIELD(CFDictionaryKeyCallBacks, copyDescription, 24, CFDictionaryCopyDescriptionCallBack);
HAS_FIELD(CFDictionaryKeyCallBacks, equal, 32, CFDictionaryEqualCallBack);
HAS_FIELD(CFDictionaryKeyCallBacks, hash, 40, CFDictionaryHashCallBack);
IS_STRUCT(CFDictionaryValueCallBacks, 40);
HAS_FIELD(CFDictionaryValueCallBacks, version, 0, CFIndex);
HAS_FIELD(CFDictionaryValueCallBacks, retain, 8, CFDictionaryRetainCallBack);
HAS_FIELD(CFDictionaryValueCallBacks, release, 16, CFDictionaryReleaseCallBack);
HAS_FIELD(CFDictionaryValueCallBacks, copyDescription, 24, CFDictionaryCopyDescriptionCallBack);
HAS_FIELD(CFDictionaryValueCallBacks, equal, 32, CFDictionaryEqualCallBack);

IS_STRUCT(CFRunLoopTimerContext, 40);
HAS_FIELD(CFRunLoopTimerContext, version, 0, CFIndex);
HAS_FIELD(CFRunLoopTimerContext, info, 8, void*);
HAS_FIELD(CFRunLoopTimerContext, retain, 16, const void* (*)(const void*));
HAS_FIELD(CFRunLoopTimerContext, release, 24, void (*)(const void*));
HAS_FIELD(CFRunLoopTimerContext, copyDescription, 32, CFStringRef (*)(const void*));

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
IS_VALUE(RTLD_LAZY, 1);
IS_VALUE(SIGINT, 2);
IS_VALUE(SIGHUP, 1);
IS_VALUE(CLOCK_MONOTONIC_RAW, 4);
static_assert(std::string_view(kIOServicePlane) == "IOService");

// CoreFoundation

IS_FUNCTION(CFRetain, CFTypeRef (*)(CFTypeRef));
IS_FUNCTION(CFRelease, void (*)(CFTypeRef));
IS_FUNCTION(CFGetTypeID, CFTypeID (*)(CFTypeRef));
IS_FUNCTION(CFRangeMake, CFRange (*)(CFIndex, CFIndex));
GIVES(CFSTR("a text"), CFStringRef);
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
IS_OBJECT(kCFAllocatorDefault, CFAllocatorRef);
IS_OBJECT(kCFBooleanTrue, CFBooleanRef);
IS_OBJECT(kCFBooleanFalse, CFBooleanRef);
IS_OBJECT(kCFTypeArrayCallBacks, CFArrayCallBacks);
IS_OBJECT(kCFTypeDictionaryKeyCallBacks, CFDictionaryKeyCallBacks);
IS_OBJECT(kCFTypeDictionaryValueCallBacks, CFDictionaryValueCallBacks);
IS_OBJECT(kCFPreferencesAnyHost, CFStringRef);
IS_OBJECT(kCFPreferencesCurrentUser, CFStringRef);
IS_OBJECT(kCFRunLoopCommonModes, CFRunLoopMode);

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
IS_OBJECT(kIOMainPortDefault, mach_port_t);

// Carbon, keyboard layouts, Accessibility

IS_TYPE(EventHandlerProcPtr, OSStatus (*)(EventHandlerCallRef, EventRef, void*));
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
IS_OBJECT(kTISPropertyUnicodeKeyLayoutData, CFStringRef);
IS_FUNCTION(UCKeyTranslate,
            OSStatus (*)(const UCKeyboardLayout*, UInt16, UInt16, UInt32, UInt32, OptionBits,
                         UInt32*, UniCharCount, UniCharCount*, UniChar*));
IS_FUNCTION(LMGetKbdType, UInt8 (*)());
IS_OBJECT(kAXTrustedCheckOptionPrompt, CFStringRef);
IS_FUNCTION(AXIsProcessTrusted, Boolean (*)());
IS_FUNCTION(AXIsProcessTrustedWithOptions, Boolean (*)(CFDictionaryRef));

// Dispatch and the C library

IS_REFERENCE(dispatch_object_t);
IS_REFERENCE(dispatch_queue_t);
IS_REFERENCE(dispatch_queue_attr_t);
IS_REFERENCE(dispatch_source_t);
IS_CONSTANT_REFERENCE(dispatch_source_type_t);
IS_TYPE(dispatch_function_t, void (*)(void*));
IS_NUMBER(dispatch_qos_class_t, unsigned int);
GIVES(&_dispatch_source_type_signal, dispatch_source_type_t);
GIVES(DISPATCH_SOURCE_TYPE_SIGNAL, dispatch_source_type_t);
static_assert(static_cast<dispatch_queue_attr_t>(DISPATCH_QUEUE_SERIAL) == nullptr);
// A queue of its own kind, in newer kits.
static_assert(std::is_convertible_v<decltype(dispatch_get_main_queue()), dispatch_queue_t>);
GIVES(dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_UTILITY, 0),
      dispatch_queue_attr_t);
IS_FUNCTION(dispatch_queue_attr_make_with_qos_class,
            dispatch_queue_attr_t (*)(dispatch_queue_attr_t, dispatch_qos_class_t, int));
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

// The log

IS_FUNCTION(os_log_type_enabled, bool (*)(os_log_t, os_log_type_t));
static_assert(std::is_class_v<os_log_s>);
static_assert(std::is_same_v<decltype(_os_log_default), os_log_s>);
GIVES(OS_LOG_DEFAULT, os_log_t);
#ifdef __APPLE__
IS_FUNCTION(_os_log_impl,
            void (*)(void*, os_log_t, os_log_type_t, const char*, uint8_t*, uint32_t));
GIVES(&__dso_handle, mach_header*);
#endif

/// That the two macros take what they are given is all that can be seen of them.
[[maybe_unused]] void logs(const char* text) {
  os_log(OS_LOG_DEFAULT, "%{public}s", text);
  os_log_with_type(OS_LOG_DEFAULT, OS_LOG_TYPE_DEFAULT, "%{public}s", text);
}

}  // namespace
