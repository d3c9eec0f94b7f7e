// The part of CoreFoundation that Brivane uses, for builds without the Mac's SDK; C++ and
// Objective-C++ only. Declarations and values are those of the system's interface.
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __APPLE__
#include <MacTypes.h>
#else
typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef int8_t SInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef uint64_t UInt64;
typedef int64_t SInt64;
typedef SInt32 OSStatus;
typedef UInt16 UniChar;
typedef unsigned long UniCharCount;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef UInt32 OptionBits;
typedef unsigned long ByteCount;
typedef unsigned long ItemCount;
enum { noErr = 0 };
#endif

// The static analyzer finds references that are never released by these.
#if defined(__clang__)
#define CF_RETURNS_RETAINED __attribute__((cf_returns_retained))
#define BRIVANE_BRIDGED(type) __attribute__((objc_bridge(type)))
#else
#define CF_RETURNS_RETAINED
#define BRIVANE_BRIDGED(type)
#endif

typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFHashCode;
typedef signed long CFIndex;
typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime;

typedef const void* CFTypeRef;
typedef CFTypeRef CFPropertyListRef;
typedef const struct BRIVANE_BRIDGED(NSString) __CFString* CFStringRef;
typedef const struct BRIVANE_BRIDGED(NSArray) __CFArray* CFArrayRef;
typedef const struct BRIVANE_BRIDGED(NSDictionary) __CFDictionary* CFDictionaryRef;
typedef const struct BRIVANE_BRIDGED(NSData) __CFData* CFDataRef;
typedef const struct BRIVANE_BRIDGED(NSDate) __CFDate* CFDateRef;
typedef const struct BRIVANE_BRIDGED(NSNumber) __CFNumber* CFNumberRef;
typedef const struct BRIVANE_BRIDGED(NSNumber) __CFBoolean* CFBooleanRef;
typedef const struct BRIVANE_BRIDGED(NSURL) __CFURL* CFURLRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef struct __CFBundle* CFBundleRef;
typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;
typedef struct __CFRunLoopTimer* CFRunLoopTimerRef;
typedef struct __CFMachPort* CFMachPortRef;
typedef CFStringRef CFRunLoopMode;

typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

#if defined(__cplusplus)
extern "C" {
#endif

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  CFRange range;
  range.location = location;
  range.length = length;
  return range;
}

// Objects

extern const CFAllocatorRef kCFAllocatorDefault;
CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);

// Text

typedef UInt32 CFStringEncoding;
enum CFStringBuiltInEncodings : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))
CFTypeID CFStringGetTypeID(void);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding,
                                    Boolean isExternalRepresentation) CF_RETURNS_RETAINED;
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters,
                                         CFIndex length) CF_RETURNS_RETAINED;
CFIndex CFStringGetLength(CFStringRef text);
CFIndex CFStringGetBytes(CFStringRef text, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex bufferLength,
                         CFIndex* usedLength);

// Numbers, dates, data

enum CFNumberType : CFIndex {
  kCFNumberSInt64Type = 4,
  kCFNumberFloat64Type = 6,
};

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);
CFTypeID CFNumberGetTypeID(void);
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type,
                           const void* value) CF_RETURNS_RETAINED;
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
Boolean CFNumberIsFloatType(CFNumberRef number);
CFTypeID CFDateGetTypeID(void);
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime time) CF_RETURNS_RETAINED;
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);
CFTypeID CFDataGetTypeID(void);
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes,
                       CFIndex length) CF_RETURNS_RETAINED;
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);

// Arrays and dictionaries

typedef const void* (*CFArrayRetainCallBack)(CFAllocatorRef allocator, const void* value);
typedef void (*CFArrayReleaseCallBack)(CFAllocatorRef allocator, const void* value);
typedef CFStringRef (*CFArrayCopyDescriptionCallBack)(const void* value);
typedef Boolean (*CFArrayEqualCallBack)(const void* one, const void* other);
typedef struct {
  CFIndex version;
  CFArrayRetainCallBack retain;
  CFArrayReleaseCallBack release;
  CFArrayCopyDescriptionCallBack copyDescription;
  CFArrayEqualCallBack equal;
} CFArrayCallBacks;

extern const CFArrayCallBacks kCFTypeArrayCallBacks;
CFTypeID CFArrayGetTypeID(void);
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) CF_RETURNS_RETAINED;
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

typedef const void* (*CFDictionaryRetainCallBack)(CFAllocatorRef allocator, const void* value);
typedef void (*CFDictionaryReleaseCallBack)(CFAllocatorRef allocator, const void* value);
typedef CFStringRef (*CFDictionaryCopyDescriptionCallBack)(const void* value);
typedef Boolean (*CFDictionaryEqualCallBack)(const void* one, const void* other);
typedef CFHashCode (*CFDictionaryHashCallBack)(const void* value);
typedef struct {
  CFIndex version;
  CFDictionaryRetainCallBack retain;
  CFDictionaryReleaseCallBack release;
  CFDictionaryCopyDescriptionCallBack copyDescription;
  CFDictionaryEqualCallBack equal;
  CFDictionaryHashCallBack hash;
} CFDictionaryKeyCallBacks;
typedef struct {
  CFIndex version;
  CFDictionaryRetainCallBack retain;
  CFDictionaryReleaseCallBack release;
  CFDictionaryCopyDescriptionCallBack copyDescription;
  CFDictionaryEqualCallBack equal;
} CFDictionaryValueCallBacks;

extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
CFTypeID CFDictionaryGetTypeID(void);
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks)
    CF_RETURNS_RETAINED;
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values);

// Bundles, paths, languages

enum CFURLPathStyle : CFIndex { kCFURLPOSIXPathStyle = 0 };

CFURLRef CFURLCopyAbsoluteURL(CFURLRef url) CF_RETURNS_RETAINED;
CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) CF_RETURNS_RETAINED;
CFBundleRef CFBundleGetMainBundle(void);
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) CF_RETURNS_RETAINED;
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle) CF_RETURNS_RETAINED;
CFArrayRef CFLocaleCopyPreferredLanguages(void) CF_RETURNS_RETAINED;

// Settings

extern const CFStringRef kCFPreferencesAnyHost;
extern const CFStringRef kCFPreferencesCurrentUser;
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key,
                                            CFStringRef application) CF_RETURNS_RETAINED;
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application);
Boolean CFPreferencesAppSynchronize(CFStringRef application);
CFArrayRef CFPreferencesCopyKeyList(CFStringRef application, CFStringRef user,
                                    CFStringRef host) CF_RETURNS_RETAINED;
CFDictionaryRef CFPreferencesCopyMultiple(CFArrayRef keys, CFStringRef application,
                                          CFStringRef user, CFStringRef host) CF_RETURNS_RETAINED;

// Run loops

extern const CFRunLoopMode kCFRunLoopCommonModes;
CFRunLoopRef CFRunLoopGetMain(void);
void CFRunLoopRun(void);
void CFRunLoopStop(CFRunLoopRef loop);
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef allocator, CFMachPortRef port,
                                                 CFIndex order) CF_RETURNS_RETAINED;
void CFMachPortInvalidate(CFMachPortRef port);

typedef struct {
  CFIndex version;
  void* info;
  const void* (*retain)(const void* info);
  void (*release)(const void* info);
  CFStringRef (*copyDescription)(const void* info);
} CFRunLoopTimerContext;
typedef void (*CFRunLoopTimerCallBack)(CFRunLoopTimerRef timer, void* info);

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef allocator, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags flags, CFIndex order,
                                       CFRunLoopTimerCallBack callout,
                                       CFRunLoopTimerContext* context) CF_RETURNS_RETAINED;
void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode);
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);

#if defined(__cplusplus)
}
#endif

// Geometry, which lies in CoreFoundation although CoreGraphics owns it.

typedef double CGFloat;
typedef struct CGPoint {
  CGFloat x;
  CGFloat y;
} CGPoint;
typedef struct CGSize {
  CGFloat width;
  CGFloat height;
} CGSize;
typedef struct CGRect {
  CGPoint origin;
  CGSize size;
} CGRect;
