// What Simulator/Seam is in the module that is built with it: a library as it ships does not let
// the switch of automatic integration be reached on its own. Scenarios that do so are played with
// others.

#include <stdlib.h>

extern "C" {

[[gnu::visibility("default")]] bool zib_testing_is_swizzling_enabled() { return true; }

[[gnu::visibility("default")]] void zib_testing_set_swizzling_enabled(bool) { abort(); }

[[gnu::visibility("default")]] void zib_testing_setup_auto_swizzling() { abort(); }
}
