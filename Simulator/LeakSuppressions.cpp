// GNUstep keeps what it makes at start for the length of the process, and does not count it as
// reachable.

extern "C" const char* __lsan_default_suppressions();  // NOLINT: the sanitizer's own name.

const char* __lsan_default_suppressions() {  // NOLINT
  return "leak:libobjc.so\nleak:libgnustep-base.so\n";
}

extern "C" const char* __lsan_default_options();  // NOLINT

// What was suppressed is no news, and standard error is for what is.
const char* __lsan_default_options() { return "print_suppressions=0"; }  // NOLINT
