// Objects of Apple's C library that Linux's has not, or under another name.

#include <ctype.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

extern "C" {

// Stands in for `stderr`.
FILE* __stderrp;

// The compiler's guard of arrays on the stack.
uintptr_t __stack_chk_guard = 0x00a5c3f1d8e62b74;

// Of a locale, the classes of the first 256 characters: all that the inline functions of the
// platform's <ctype.h> read.
struct {
  char magic[8], encoding[32];
  void *toWide, *toBytes;
  int32_t invalid;
  uint32_t types[256];
  int32_t lower[256], upper[256];
} _DefaultRuneLocale;

// Binds a function at its first use there. Here all are bound before.
void dyld_stub_binder() { abort(); }
}

namespace {

struct CharacterClass {
  int (*has)(int);
  uint32_t bit;
};

constexpr CharacterClass characterClasses[] = {
    {isalpha, 0x100},    {iscntrl, 0x200},   {isdigit, 0x400},   {isgraph, 0x800},
    {islower, 0x1000},   {ispunct, 0x2000},  {isspace, 0x4000},  {isupper, 0x8000},
    {isxdigit, 0x10000}, {isblank, 0x20000}, {isprint, 0x40000},
};

// Before the initialisers of the image.
[[gnu::constructor(101)]] void setUp() {
  __stderrp = stderr;
  for (int character = 0; character < 128; ++character) {
    for (const CharacterClass& each : characterClasses)
      if (each.has(character) != 0) _DefaultRuneLocale.types[character] |= each.bit;
    _DefaultRuneLocale.lower[character] = tolower(character);
    _DefaultRuneLocale.upper[character] = toupper(character);
  }
}

}  // namespace

#if defined(__aarch64__)
// There variable arguments lie on the stack, all of them; here the first of them are in registers.
// Calls_arm64.S says where those of a call begin.

namespace {

struct VariableArguments {
  void *stack, *generalEnd, *vectorEnd;
  int generalLeft, vectorLeft;
};

void beginAt(void* stack, va_list* list) {
  const VariableArguments arguments = {stack, nullptr, nullptr, 0, 0};
  static_assert(sizeof arguments == sizeof *list);
  memcpy(list, &arguments, sizeof arguments);
}

}  // namespace

extern "C" {

int zib_fprintf_from(FILE* file, const char* format, void* stack) {
  va_list arguments;
  beginAt(stack, &arguments);
  return vfprintf(file, format, arguments);
}

int zib_snprintf_from(char* text, size_t size, const char* format, void* stack) {
  va_list arguments;
  beginAt(stack, &arguments);
  return vsnprintf(text, size, format, arguments);
}
}
#endif
