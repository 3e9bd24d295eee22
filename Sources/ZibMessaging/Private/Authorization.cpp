#include "ZibMessaging/Private/Authorization.h"

#include <array>
#include <optional>
#include <utility>

#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Deferred.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace zib {
namespace {

constexpr const char* answerOperation = "the answer to the authorization request";

constexpr std::array<NotificationAction, 3> actions{
    {{"action_1", "Back"}, {"action_2", "Next"}, {"action_3", "View In App"}}};
constexpr std::array<NotificationCategory, 1> categories{{{"ZibNotification", actions}}};

void registerNotificationCategories() {
  NotificationCenter::current().setCategories(categories);
  logLine("Notification categories registered");
}

}  // namespace

// The user's answer, on its way to the main thread.
struct Authorization::Answer {
  std::weak_ptr<ZibMessaging> messaging;
  Application application;
  bool granted;
  std::optional<Error> error;
};

void Authorization::request(const std::weak_ptr<ZibMessaging>& messaging,
                            const Application& application) {
  namespace options = notificationOptions;
  const auto center = NotificationCenter::current();
  if (!center) {
    logError("ZibMessaging: this process has no notification centre, and no push");
    return;
  }
  center.requestAuthorization(
      options::badge | options::sound | options::alert,
      [messaging = messaging, application = application](bool granted, std::optional<Error> error) {
        recording::told(recording::answered, granted, error);
        contained(answerOperation, [&] {
          containedOnMain(answerOperation, [answer = Answer{messaging, application, granted,
                                                            std::move(error)}] { take(answer); });
        });
      });
}

void Authorization::take(const Answer& answer) {
  const auto messaging = answer.messaging.lock();
  if (answer.error) {
    logError("Push authorization error", answer.error);
    if (messaging) messaging->authorizationFailed(*answer.error);
    return;
  }
  if (messaging) messaging->authorizationAnswered(answer.granted);
  contained("savePushPermission", [&] { ZibStorage::shared().savePushPermission(answer.granted); });
  logLine(answer.granted ? "Push notification authorization: granted"
                         : "Push notification authorization: denied");
  if (!answer.granted) return;
  if (messaging) contained("registerNotificationCategories", &registerNotificationCategories);
  // One turn of the main queue later, when the categories are in place.
  containedOnMain("registerForRemoteNotifications", [application = answer.application] {
    application.registerForRemoteNotifications();
  });
}

}  // namespace zib
