// The two functions of the block runtime that GNUstep's headers ask for; Debian ships no header of
// this name. Not for anything else.

#pragma once

#ifdef __cplusplus
extern "C" {
#endif

void* _Block_copy(const void* block);
void _Block_release(const void* block);

#ifdef __cplusplus
}
#endif
