#include "ZibPlatform/ObjectiveC/Send.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
namespace zib {
namespace {

#if defined(__APPLE__)

// Of so many selectors as any host will have.
bool isNews(Selector selector) {
  static constinit std::array<std::atomic<objc::SEL>, 32> known{};
  for (std::atomic<objc::SEL>& each : known) {
    objc::SEL other = nullptr;
    if (each.compare_exchange_strong(other, selector.raw())) return true;
    if (other == selector.raw()) return false;
  }
  return false;
}

void end() {}

#else

bool isNews(Selector) { return true; }

[[noreturn]] void end() { std::abort(); }

#endif

void reportMismatch(objc::id receiver, Selector selector, const char* sent, const char* actual) {
  if (!isNews(selector)) return;
  std::fprintf(stderr,
               "ZibMessaging: the message %s to an object of class %s was sent as \"%s\", but the "
               "method is \"%s\"\n",
               selector.name(), Class::ofObject(receiver).name(), sent, actual);
  end();
}

}  // namespace

objc::id allocate(Class cls) { return send<objc::id>(cls.object(), selector<"alloc">()); }

Object create(Class cls) {
  return Object::adopted(send<objc::id>(cls.object(), selector<"new">()));
}

void checkSend(objc::id receiver, Selector selector, const char* types) {
  const Method method = Class::ofObject(receiver).instanceMethod(selector);
  const char* actual = method ? method.typeEncoding() : nullptr;
  if (actual != nullptr && !encoding::agree(types, actual)) {
    reportMismatch(receiver, selector, types, actual);
  }
}

}  // namespace zib
