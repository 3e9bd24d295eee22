// The notification centre and what it delivers, found by name.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// A notification on its way to the user.
class Notification : public Handle {
 public:
  static Notification retained(objc::id object) { return Notification(Object::retained(object)); }
  // What the sender put into it. Empty when any step of the way there is missing.
  [[nodiscard]] Dictionary userInfo() const;

 private:
  friend class Borrowed<Notification>;
  explicit Notification(Object native) noexcept : Handle(std::move(native)) {}
};

// What the user did with a notification.
class NotificationResponse : public Handle {
 public:
  static NotificationResponse retained(objc::id object) {
    return NotificationResponse(Object::retained(object));
  }
  // For as long as the response lives.
  [[nodiscard]] StringRef actionIdentifier() const;
  // That of the notification.
  [[nodiscard]] Dictionary userInfo() const;

 private:
  friend class Borrowed<NotificationResponse>;
  explicit NotificationResponse(Object native) noexcept : Handle(std::move(native)) {}
};

struct NotificationAction {
  std::string_view identifier;
  std::string_view title;
};

struct NotificationCategory {
  std::string_view identifier;
  std::span<const NotificationAction> actions;
};

// The raw values of UNAuthorizationOptions and UNNotificationPresentationOptions.
namespace notificationOptions {
inline constexpr objc::UInteger badge = 1;
inline constexpr objc::UInteger sound = 2;
inline constexpr objc::UInteger alert = 4;
inline constexpr objc::UInteger banner = 16;  // presentation only, since iOS 14
}  // namespace notificationOptions

// The current notification centre. Where the system has none, requests go unanswered and the
// delegate is nil.
class NotificationCenter : public Handle {
 public:
  static NotificationCenter current();

  // Whether the system has one.
  explicit operator bool() const noexcept { return native() != nullptr; }

  [[nodiscard]] objc::id delegate() const;
  // The centre does not own its delegate.
  void setDelegate(objc::id delegate) const;
  // The answer comes on a thread of the platform's choosing, once, and must not throw. The error
  // is there only if the platform reports one.
  template <class Answer>
  void requestAuthorization(objc::UInteger options, Answer answer) const {
    request(options, AuthorizationAnswer::from([answer = std::move(answer)](objc::BOOL granted,
                                                                            objc::id error) {
              answer(granted != 0,
                     error == nullptr ? std::nullopt : std::optional(Error::fromNative(error)));
            }));
  }
  // Replaces all categories of the application. Actions and categories have no options and no
  // intents.
  void setCategories(std::span<const NotificationCategory> categories) const;

 private:
  using AuthorizationAnswer = Block<void(objc::BOOL, objc::id)>;

  explicit NotificationCenter(Object native) noexcept : Handle(std::move(native)) {}

  void request(objc::UInteger options, const AuthorizationAnswer& answer) const;
};

}  // namespace zib
