#pragma once

// The main queue only, see Apple developer documentation, Dispatch.

typedef void (^dispatch_block_t)(void);
@protocol OS_dispatch_queue;
typedef id<OS_dispatch_queue> dispatch_queue_t;

extern "C" {
dispatch_queue_t _Nonnull dispatch_get_main_queue(void);
void dispatch_async(dispatch_queue_t _Nonnull queue, dispatch_block_t _Nonnull block);
}
