// A host and a core in C.

#pragma once

#include "ZibC/zib.h"

#if defined(__cplusplus)
extern "C" {
#endif

// What their functions were called with, in order, each with a semicolon behind it.
struct c_notes {
  char text[4096];
};

bool c_install_core(struct c_notes* notes);
bool c_set_delegate(struct c_notes* notes);

#if defined(__cplusplus)
}
#endif
