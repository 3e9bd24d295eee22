// A library that has one of everything that a library built for Apple may ask of Linux, also what
// the module has not today.

#pragma once

#include <stdio.h>

extern "C" {

// A function of the host's, called with `context`. It may throw.
typedef void (*sample_callback)(void* context);

// Thread-local variables with first values, and one that begins as nothing.
int sample_count(void);
const char* sample_thread_text(void);
long sample_thread_zero(void);

// What the library's initialisers left, in their order.
const char* sample_initialised(void);

// Pointers that the loader fills in: into the library, with an offset, and to an import.
bool sample_has_good_pointers(void);
// One of those pointers, that nothing changes afterwards.
const void* sample_constant(void);

// Exceptions: from the library into itself, through it from the host, and out of it. The first two
// answer what they caught and what the registers held afterwards.
const char* sample_catches_its_own(int position);
const char* sample_catches(sample_callback call, void* context);
int sample_passes(sample_callback call, void* context);
double sample_keeps_registers(sample_callback call, void* context, double seed);
void sample_throws(const char* reason);
int sample_destroyed(void);

// The C++ library.
const char* sample_text(const char* first, const char* second);
bool sample_shares(void);
const char* sample_variant(void);
const char* sample_names_type(bool isDerived);
long sample_locks(int threads_are_done_when, sample_callback turn, void* context);

// The C library.
void sample_prints(FILE* file, const char* word, int number, double fraction, long long large);
bool sample_is_digit(char character);
}
