// What a host may well call its own things: words that the module uses too, inside. None of these
// is ever called by the module, nor any of the module's by the host.

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#define ZIB_TEST_OWN [[gnu::used, gnu::noinline]]

class FirebaseMessaging {
 public:
  ZIB_TEST_OWN static FirebaseMessaging find();
  ZIB_TEST_OWN bool setDelegate(void* delegate) const;
};
FirebaseMessaging FirebaseMessaging::find() { std::abort(); }
bool FirebaseMessaging::setDelegate(void*) const { std::abort(); }

template <class T>
class Guarded {
 public:
  void store(T) { std::abort(); }
  T load() const { std::abort(); }
};
template class Guarded<std::optional<std::string>>;

template <class Service>
class InstalledOnce {
 public:
  bool install(std::unique_ptr<Service>) noexcept { std::abort(); }
};
template class InstalledOnce<std::string>;

class Dictionary {
 public:
  ZIB_TEST_OWN bool empty() const;
};
bool Dictionary::empty() const { std::abort(); }

ZIB_TEST_OWN void logLine(std::string_view) { std::abort(); }
ZIB_TEST_OWN bool contained(std::string_view, void (*)()) { std::abort(); }
ZIB_TEST_OWN std::string hexText(std::span<const std::uint8_t>) { std::abort(); }
ZIB_TEST_OWN int errorFrom(int) { std::abort(); }
ZIB_TEST_OWN std::string_view errorDescription(int) { std::abort(); }
ZIB_TEST_OWN int readPushConfig(int) { std::abort(); }
