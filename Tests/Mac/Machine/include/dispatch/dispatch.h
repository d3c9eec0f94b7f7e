// The part of dispatch that Brivane uses, declared for the tests' own build. Cross compilers bring
// the system's own header.
#pragma once

#include <stdint.h>

extern "C" {

typedef struct dispatch_object_s {
}* dispatch_object_t;
typedef struct dispatch_queue_s : public dispatch_object_s{} * dispatch_queue_t;
typedef struct dispatch_queue_attr_s : public dispatch_object_s{} * dispatch_queue_attr_t;
typedef struct dispatch_source_s : public dispatch_object_s{} * dispatch_source_t;
typedef const struct dispatch_source_type_s* dispatch_source_type_t;
typedef void (*dispatch_function_t)(void* context);
typedef unsigned int dispatch_qos_class_t;

enum : dispatch_qos_class_t { QOS_CLASS_USER_INITIATED = 0x19, QOS_CLASS_UTILITY = 0x11 };

#define DISPATCH_QUEUE_SERIAL nullptr

extern const struct dispatch_source_type_s _dispatch_source_type_signal;
#define DISPATCH_SOURCE_TYPE_SIGNAL (&_dispatch_source_type_signal)

dispatch_queue_t dispatch_get_main_queue(void);
dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t attributes,
                                                              dispatch_qos_class_t quality,
                                                              int relativePriority);
dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
void dispatch_sync_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
void dispatch_release(dispatch_object_t object);
void dispatch_set_context(dispatch_object_t object, void* context);
void dispatch_resume(dispatch_object_t object);
dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle,
                                         uintptr_t mask, dispatch_queue_t queue);
void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler);
void dispatch_source_cancel(dispatch_source_t source);
}
