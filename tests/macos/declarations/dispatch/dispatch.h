#pragma once

// The main queue and serial queues. See Apple developer documentation, Dispatch.

#define DISPATCH_TIME_NOW (0ull)

// An opaque representation of a point in time.
typedef unsigned long long dispatch_time_t;
typedef void (^dispatch_block_t)(void);
@protocol OS_dispatch_queue;
typedef id<OS_dispatch_queue> dispatch_queue_t;
@protocol OS_dispatch_queue_attr;
typedef id<OS_dispatch_queue_attr> dispatch_queue_attr_t;
typedef enum : unsigned int {
  QOS_CLASS_UTILITY = 0x11,
} dispatch_qos_class_t;

#define DISPATCH_QUEUE_SERIAL (nil)

extern "C" {
dispatch_queue_t _Nonnull dispatch_get_main_queue(void);
dispatch_queue_attr_t _Nonnull dispatch_queue_attr_make_with_qos_class(
    dispatch_queue_attr_t _Nullable attr, dispatch_qos_class_t qos_class, int relative_priority);
dispatch_queue_t _Nonnull dispatch_queue_create(const char* _Nullable label,
                                                dispatch_queue_attr_t _Nullable attr);
dispatch_time_t dispatch_time(dispatch_time_t when, long long delta);
void dispatch_after(dispatch_time_t when, dispatch_queue_t _Nonnull queue,
                    dispatch_block_t _Nonnull block);
void dispatch_async(dispatch_queue_t _Nonnull queue, dispatch_block_t _Nonnull block);
void dispatch_sync(dispatch_queue_t _Nonnull queue, dispatch_block_t _Nonnull block);
}
