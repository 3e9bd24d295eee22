// The type encodings of the methods of the runtime class "ZibDelegateWatch". The source is included
// for the functions that it keeps to itself.

#include "Abi.h"
#include "ZibMessaging/Private/DelegateWatch.cpp"  // NOLINT(bugprone-suspicious-include)

namespace zib {
namespace {

static_assert(abi::isEncodedAs(abi::platformTypes("ZibDelegateWatch", "lookAround:"), &lookAround));
static_assert(abi::isEncodedAs(abi::platformTypes("ZibDelegateWatch", "lookAtFirebase:"),
                               &lookAtFirebase));

}  // namespace
}  // namespace zib
