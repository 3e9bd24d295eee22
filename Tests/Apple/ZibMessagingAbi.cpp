// The type encodings of the methods of the runtime class "ZibMessaging". The source is included for
// the functions that it keeps to itself.

#include "Abi.h"
#include "ZibMessaging/Private/MessagingFace.cpp"  // NOLINT(bugprone-suspicious-include)

namespace zib {
namespace {

consteval std::string_view types(std::string_view selector) {
  return abi::platformTypes("ZibMessaging", selector);
}

static_assert(abi::isEncodedAs(types("init"), &init));
static_assert(
    abi::isEncodedAs(types("userNotificationCenter:willPresentNotification:withCompletionHandler:"),
                     &willPresentNotification));
static_assert(abi::isEncodedAs(
    types("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:"),
    &didReceiveNotificationResponse));
static_assert(abi::isEncodedAs(types("messaging:didReceiveRegistrationToken:"),
                               &didReceiveRegistrationToken));

}  // namespace
}  // namespace zib
