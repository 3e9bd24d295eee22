// The type encodings of the methods of the runtime class "ZibSwizzleManager", which hosts' delegate
// classes get. The source is included for the functions that it keeps to itself.

#include "Abi.h"
#include "ZibMessaging/Private/Interceptors.cpp"  // NOLINT(bugprone-suspicious-include)

namespace zib {
namespace {

template <Row row, auto Handle>
consteval bool isEncoded() {
  const std::string_view types =
      abi::platformTypes("ZibSwizzleManager", interceptionOf(row).interceptorSelector);
  return abi::isEncodedAs(types, Function<Handle>::template all<row>.front());
}

static_assert(isEncoded<Row::didRegister, &Interceptors::didRegister>());
static_assert(isEncoded<Row::didFailRegister, &Interceptors::didFailRegister>());
static_assert(isEncoded<Row::openURL, &Interceptors::openURL>());
static_assert(isEncoded<Row::sceneOpenURL, &Interceptors::sceneOpenURLContexts>());
static_assert(isEncoded<Row::willPresent, &Interceptors::willPresent>());
static_assert(isEncoded<Row::didReceive, &Interceptors::didReceive>());
static_assert(isEncoded<Row::fcmToken, &Interceptors::fcmToken>());

}  // namespace
}  // namespace zib
