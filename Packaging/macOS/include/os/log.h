// The part of the system log's interface that Brivane uses, for builds without the Mac's SDK. Off
// the Mac the one call is a function that a test provides.
#pragma once

#include <stdbool.h>
#include <stdint.h>

#ifdef __APPLE__
#include <os/object.h>
#endif

#if defined(__OBJC__) && defined(OS_OBJECT_USE_OBJC) && OS_OBJECT_USE_OBJC
OS_OBJECT_DECL(os_log);
#else
typedef struct os_log_s* os_log_t;
#endif

typedef uint8_t os_log_type_t;
#define OS_LOG_TYPE_DEFAULT ((os_log_type_t)0x00)

#if defined(__cplusplus)
extern "C" {
#endif

extern struct os_log_s _os_log_default;
bool os_log_type_enabled(os_log_t log, os_log_type_t type);

#ifdef __APPLE__
extern struct mach_header __dso_handle;
void _os_log_impl(void* dso, os_log_t log, os_log_type_t type, const char* format, uint8_t* buffer,
                  uint32_t size);
#else
void brivane_recorded_os_log(os_log_t log, os_log_type_t type, const char* format, ...);
#endif

#if defined(__cplusplus)
}
#endif

#if defined(__OBJC__) && defined(OS_OBJECT_USE_OBJC) && OS_OBJECT_USE_OBJC
#define OS_LOG_DEFAULT ((__bridge os_log_t)(&_os_log_default))
#else
#define OS_LOG_DEFAULT (&_os_log_default)
#endif

#ifdef __APPLE__
#define os_log_with_type(log, type, format, ...)                                             \
  __extension__({                                                                            \
    os_log_t brivane_log = (log);                                                            \
    os_log_type_t brivane_type = (type);                                                     \
    if (os_log_type_enabled(brivane_log, brivane_type)) {                                    \
      __attribute__((section("__TEXT,__oslogstring"),                                        \
                     internal_linkage)) static const char brivane_format[]                   \
          __attribute__((aligned(1))) = format;                                              \
      uint8_t __attribute__((aligned(16)))                                                   \
      brivane_buffer[__builtin_os_log_format_buffer_size(format, ##__VA_ARGS__)];            \
      _os_log_impl((void*)&__dso_handle, brivane_log, brivane_type, brivane_format,          \
                   (uint8_t*)__builtin_os_log_format(brivane_buffer, format, ##__VA_ARGS__), \
                   (uint32_t)sizeof(brivane_buffer));                                        \
    }                                                                                        \
  })
#else
#define os_log_with_type(log, type, ...) brivane_recorded_os_log(log, type, __VA_ARGS__)
#endif
#define os_log(log, ...) os_log_with_type(log, OS_LOG_TYPE_DEFAULT, __VA_ARGS__)
