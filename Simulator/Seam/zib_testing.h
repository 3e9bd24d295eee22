// What a scenario does to the module, or reads of it, that zib.h has no functions for, since no
// host may: the switch and the pass of automatic integration on their own. Whatever stands behind
// zib.h gives these too, to tests alone.

#pragma once

#include <stdbool.h>  // NOLINT(modernize-deprecated-headers): for C

#if defined(__cplusplus)
extern "C" {
#endif

bool zib_testing_is_swizzling_enabled(void);
void zib_testing_set_swizzling_enabled(bool is_enabled);
void zib_testing_setup_auto_swizzling(void);

#if defined(__cplusplus)
}
#endif
