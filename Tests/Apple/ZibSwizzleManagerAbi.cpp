// The type encodings of the methods of the runtime class "ZibSwizzleManager", which hosts' delegate
// classes get. The source is included for the functions that it keeps to itself.

#include "Abi.h"
#include "ZibMessaging/ZibSwizzleManagerInterceptors.cpp"  // NOLINT(bugprone-suspicious-include)

struct ZibTestSeam {
  using Interceptors = ZibSwizzleManager::Interceptors;

  static consteval std::string_view types(std::string_view selector) {
    return abi::platformTypes("ZibSwizzleManager", selector);
  }

  static consteval bool areAllEncoded() {
    return abi::isEncodedAs(types("zib_didRegister:deviceToken:"), &Interceptors::didRegister) &&
           abi::isEncodedAs(types("zib_didFailRegister:error:"), &Interceptors::didFailRegister) &&
           abi::isEncodedAs(types("zib_openURL:url:options:"), &Interceptors::openURL) &&
           abi::isEncodedAs(types("zib_scene:openURLContexts:"),
                            &Interceptors::sceneOpenURLContexts) &&
           abi::isEncodedAs(types("zib_willPresent:notification:completionHandler:"),
                            &Interceptors::willPresent) &&
           abi::isEncodedAs(types("zib_didReceive:response:completionHandler:"),
                            &Interceptors::didReceive) &&
           abi::isEncodedAs(types("zib_messaging:didReceiveRegistrationToken:"),
                            &Interceptors::fcmToken);
  }
};

static_assert(ZibTestSeam::areAllEncoded());
