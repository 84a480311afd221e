#pragma once

// The main queue only, see Apple developer documentation, Dispatch.

#define NSEC_PER_MSEC 1000000ull
#define DISPATCH_TIME_NOW (0ull)

// Nanoseconds, opaque.
typedef unsigned long long dispatch_time_t;
typedef void (^dispatch_block_t)(void);
@protocol OS_dispatch_queue;
typedef id<OS_dispatch_queue> dispatch_queue_t;

extern "C" {
dispatch_queue_t _Nonnull dispatch_get_main_queue(void);
dispatch_time_t dispatch_time(dispatch_time_t when, long long delta);
void dispatch_after(dispatch_time_t when, dispatch_queue_t _Nonnull queue,
                    dispatch_block_t _Nonnull block);
void dispatch_async(dispatch_queue_t _Nonnull queue, dispatch_block_t _Nonnull block);
}
