// GNUstep keeps what it makes at start for the length of the process, and does not count it as
// reachable.

extern "C" const char* __lsan_default_suppressions();  // NOLINT: the sanitizer's own name.

const char* __lsan_default_suppressions() {  // NOLINT
  return "leak:libobjc.so\nleak:libgnustep-base.so\n";
}
