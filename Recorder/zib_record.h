// Records what the system and the host call while an app runs, as a scenario that zibsim plays. For
// debug builds: a release of the module has nothing to record with.

#ifndef ZIB_RECORD_H
#define ZIB_RECORD_H

// NOLINTNEXTLINE(modernize-deprecated-headers): for C
#include <stdbool.h>

#if defined(__cplusplus)
extern "C" {
#endif

// From now on. On the main thread, after the core and the delegates are there, and before
// configure: what the host is like is looked at here. The file holds a whole scenario at any time.
// Letters and digits of tokens, payloads and what servers answer are made unrecognisable; keys,
// numbers, lengths and whatever the module decides by stay as they are. False, and nothing is
// recorded, where the file cannot be written, a recording runs already, or the build is a release.
__attribute__((visibility("default"))) bool zib_record(const char* path);
// The same with all texts as they are.
__attribute__((visibility("default"))) bool zib_record_with_texts(const char* path);

#if defined(__cplusplus)
}
#endif
#endif
