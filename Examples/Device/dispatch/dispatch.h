// The part of libdispatch's declarations that the examples use. On a phone the SDK's own
// <dispatch/dispatch.h> takes this one's place.

#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef struct dispatch_queue_s *dispatch_queue_t;

extern struct dispatch_queue_s _dispatch_main_q;

static inline dispatch_queue_t dispatch_get_main_queue(void) { return &_dispatch_main_q; }

void dispatch_async(dispatch_queue_t queue, void (^block)(void));

#ifdef __cplusplus
}
#endif
