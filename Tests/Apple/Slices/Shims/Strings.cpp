// The functions of std::string that Apple's C++ library exports, in the layout that it has there:
// on arm64 the parts of a string are in another order. Compiled with the headers that the image was
// compiled with.

#if defined(__aarch64__)
#define _LIBCPP_ABI_ALTERNATE_STRING_LAYOUT
#endif

#include <stdio.h>

#include <string>

_LIBCPP_BEGIN_NAMESPACE_STD

#define ZIB_DEFINE(...) template __VA_ARGS__;
_LIBCPP_STRING_V1_EXTERN_TEMPLATE_LIST(ZIB_DEFINE, char)
#undef ZIB_DEFINE

namespace {

template <class Number>
string printed(const char* format, Number number) {
  char digits[24];
  return string(digits, static_cast<size_t>(snprintf(digits, sizeof digits, format, number)));
}

}  // namespace

string to_string(int value) { return printed("%d", value); }
string to_string(unsigned value) { return printed("%u", value); }
string to_string(long value) { return printed("%ld", value); }
string to_string(unsigned long value) { return printed("%lu", value); }
string to_string(long long value) { return printed("%lld", value); }
string to_string(unsigned long long value) { return printed("%llu", value); }

_LIBCPP_END_NAMESPACE_STD
