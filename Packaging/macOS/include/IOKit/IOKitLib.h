// The part of the I/O registry's interface that Brivane uses, for builds without the Mac's SDK; C++
// and Objective-C++ only.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __APPLE__
#include <mach/boolean.h>
#include <mach/kern_return.h>
#include <mach/port.h>
#else
typedef int boolean_t;
typedef int kern_return_t;
typedef unsigned int mach_port_t;
#define KERN_SUCCESS 0
#endif

typedef mach_port_t io_object_t;
typedef io_object_t io_iterator_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;
typedef char io_name_t[128];
typedef kern_return_t IOReturn;
typedef UInt32 IOOptionBits;

#define IO_OBJECT_NULL ((io_object_t)0)
#define kIOServicePlane "IOService"
enum { kIORegistryIterateRecursively = 0x00000001 };

#if defined(__cplusplus)
extern "C" {
#endif

extern const mach_port_t kIOMainPortDefault;

kern_return_t IOObjectRelease(io_object_t object);
kern_return_t IOObjectGetClass(io_object_t object, io_name_t className);
io_object_t IOIteratorNext(io_iterator_t iterator);
boolean_t IOIteratorIsValid(io_iterator_t iterator);
io_registry_entry_t IORegistryGetRootEntry(mach_port_t mainPort);
kern_return_t IORegistryEntryCreateIterator(io_registry_entry_t entry, const io_name_t plane,
                                            IOOptionBits options, io_iterator_t* iterator);
kern_return_t IORegistryEntryGetName(io_registry_entry_t entry, io_name_t name);
kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, const io_name_t plane,
                                            io_registry_entry_t* parent);
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef allocator,
                                          IOOptionBits options) CF_RETURNS_RETAINED;

#if defined(__cplusplus)
}
#endif
