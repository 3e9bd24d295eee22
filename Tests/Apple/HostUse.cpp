// All that a host or the core library can call, by way of public headers only. The check compiles
// it as a host would and holds what it needs from the module against the exports of the module, in
// both directions: a public function that is missing in exports.txt would not link, and an export
// that nothing here needs is not public.

#include <tuple>

#include "CoreBoundary/Zib.h"
#include "CoreBoundary/ZibLogger.h"
#include "CoreBoundary/ZibStorage.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibMessagingDelegate.h"
#include "ZibMessaging/ZibPayloadBuilder.h"

namespace {

[[gnu::used]] const std::tuple messaging{
    &ZibMessaging::shared,
    &ZibMessaging::configure,
    &ZibMessaging::registerForPush,
    &ZibMessaging::didRegisterForRemoteNotifications,
    &ZibMessaging::didFailToRegisterForRemoteNotifications,
    &ZibMessaging::setPushToken,
    &ZibMessaging::setFCMToken,
    &ZibMessaging::didReceiveRegistrationToken,
    &ZibMessaging::ensureFirebaseMessagingDelegate,
    &ZibMessaging::willPresent,
    &ZibMessaging::didReceive,
    &ZibMessaging::trackNotificationReceived,
    &ZibMessaging::trackNotificationOpened,
    &ZibMessaging::setupAsNotificationDelegate,
    &ZibMessaging::runtimeObject,
    &foregroundPresentationOptions,
};

[[gnu::used]] const std::tuple deepLinks{
    &ZibDeepLinkHandler::shared,
    &ZibDeepLinkHandler::setURLDelegate,
    &ZibDeepLinkHandler::handleNotificationURL,
    &ZibDeepLinkHandler::handleURL,
};

[[gnu::used]] const std::tuple payloads{&ZibPayloadBuilder::createNotificationPayload};

[[gnu::used]] const std::tuple core{
    &ZibLogger::shared, &ZibLogger::install, &Zib::shared,
    &Zib::install,      &ZibStorage::shared, &ZibStorage::install,
};

using StringOf = std::optional<std::string> (zib::Dictionary::*)(std::string_view) const;
using StringOfConstant = std::optional<std::string> (zib::Dictionary::*)(zib::ConstantString) const;

[[gnu::used]] const std::tuple platformValues{
    &zib::Dictionary::retained,
    &zib::Dictionary::from,
    &zib::Dictionary::empty,
    static_cast<StringOf>(&zib::Dictionary::string),
    static_cast<StringOfConstant>(&zib::Dictionary::string),
    &zib::constantString<"key">,
    &zib::Dictionary::values,
    &zib::Dictionary::native,
    &zib::Error::fromNative,
    &zib::Error::nativeError,
    &zib::URL::parse,
    &zib::URL::retained,
    &zib::URL::absoluteString,
    &zib::URL::queryItems,
    &zib::Application::shared,
    &zib::Application::isApplicationObject,
    &zib::Application::delegate,
    &zib::Application::registerForRemoteNotifications,
    &zib::Application::open,
    &zib::Notification::userInfo,
    &zib::NotificationResponse::actionIdentifier,
    &zib::NotificationResponse::notification,
    &zib::ValueMap::reserve,
    &zib::ValueMap::set,
    &zib::ValueMap::append,
    &zib::ValueMap::find,
    &zib::ValueMap::size,
    &zib::ValueMap::empty,
    &zib::ValueMap::begin,
    &zib::ValueMap::end,
};

// What a host derives from and constructs.
class Delegate final : public ZibMessagingDelegate {};

[[gnu::used]] void setDelegate(ZibMessaging& module) {
  module.setDelegate(std::make_shared<Delegate>());
}

[[gnu::used]] bool useValues(std::uint64_t number) {
  zib::ValueMap map{{"number", number}};
  zib::ValueMap copy(map);
  const zib::ValueMap moved(std::move(copy));
  zib::ValueMap other;
  other = moved;
  map = std::move(other);
  return map == moved;
}

}  // namespace
