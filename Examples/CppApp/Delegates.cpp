#include "CppApp/Delegates.h"

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"

using zib::Block;
using zib::BlockLayout;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

namespace {

Game* game = nullptr;

void didRegister(id, SEL, id /*application*/, id deviceToken) {
  game->gotDeviceToken(zib::bytesOf(deviceToken));
}

void didFailToRegister(id, SEL, id /*application*/, id error) {
  game->gotNoDeviceToken(zib::Error::fromNative(error));
}

BOOL openURL(id, SEL, id /*application*/, id url, id /*options*/) {
  const auto opened = zib::URL::retained(url);
  return static_cast<BOOL>(opened && game->opened(*opened));
}

// The system waits for its completions: each is called once, whatever happens.
void willPresent(id, SEL, id /*center*/, id notification, BlockLayout* completion) {
  Block<void(UInteger)>::call(completion,
                              game->aboutToPresent(zib::Notification::retained(notification)));
}

void didReceive(id, SEL, id /*center*/, id response, BlockLayout* completion) {
  game->tapped(zib::NotificationResponse::retained(response));
  Block<void()>::call(completion);
}

}  // namespace

zib::Object makeDelegate(Game& toldGame) {
  game = &toldGame;
  const zib::Class cls =
      zib::ClassBuilder("GameDelegate", zib::classNamed<"NSObject">())
          .method("application:didRegisterForRemoteNotificationsWithDeviceToken:", &didRegister)
          .method("application:didFailToRegisterForRemoteNotificationsWithError:",
                  &didFailToRegister)
          .method("application:openURL:options:", &openURL)
          .method("userNotificationCenter:willPresentNotification:withCompletionHandler:",
                  &willPresent)
          .method("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                  &didReceive)
          .registerClass();
  return zib::create(cls);
}
