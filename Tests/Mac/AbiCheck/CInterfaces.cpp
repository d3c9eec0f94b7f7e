// Holds our own declarations of the Mac's C interfaces against the real ones: those that compare.py
// reads, and here what it can't.
#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <IOKit/IOKitLib.h>
#include <crt_externs.h>
#include <dispatch/dispatch.h>
#include <dlfcn.h>
#include <os/log.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <ctime>
#include <string_view>

#include "Tests/Mac/AbiCheck/AbiCheck.h"

namespace {

#include "CInterfaces.inc"

IS_VALUE(SIGTERM, 15);
IS_VALUE(RTLD_LAZY, 1);
IS_VALUE(SIGINT, 2);
IS_VALUE(SIGHUP, 1);
IS_VALUE(CLOCK_MONOTONIC_RAW, 4);
#ifdef __APPLE__
IS_VALUE(_CS_DARWIN_USER_TEMP_DIR, 65537);
#endif

static_assert(std::string_view(kIOServicePlane) == "IOService");
GIVES((CFSTR("a text")), CFStringRef);
static_assert(std::is_class_v<UCKeyboardLayout>);

GIVES((&_dispatch_source_type_signal), dispatch_source_type_t);
GIVES((DISPATCH_SOURCE_TYPE_SIGNAL), dispatch_source_type_t);
static_assert(static_cast<dispatch_queue_attr_t>(DISPATCH_QUEUE_SERIAL) == nullptr);
// A queue of its own kind, in newer kits.
static_assert(std::is_convertible_v<decltype(dispatch_get_main_queue()), dispatch_queue_t>);
GIVES((dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_UTILITY, 0)),
      dispatch_queue_attr_t);

static_assert(std::is_class_v<os_log_s>);
static_assert(std::is_same_v<decltype(_os_log_default), os_log_s>);
GIVES((OS_LOG_DEFAULT), os_log_t);
#ifdef __APPLE__
IS_FUNCTION(_os_log_impl,
            void (*)(void*, os_log_t, os_log_type_t, const char*, uint8_t*, uint32_t));
GIVES((&__dso_handle), mach_header*);
#endif

/// That the two macros take what they are given is all that can be seen of them.
[[maybe_unused]] void logs(const char* text) {
  os_log(OS_LOG_DEFAULT, "%{public}s", text);
  os_log_with_type(OS_LOG_DEFAULT, OS_LOG_TYPE_DEFAULT, "%{public}s", text);
}

}  // namespace
