// Firebase Messaging, which is never linked: everything about it is found by name at run time, and
// every piece can be missing.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

class FirebaseMessaging : public Handle {
 public:
  // How far the look-up came.
  enum class Found { nothing, classOnly, classMethod, instance };

  // Looks for the class "FIRMessaging", its class method "messaging", and what that returns.
  static FirebaseMessaging find();

  [[nodiscard]] Found found() const noexcept { return found_; }
  // Nil when Firebase has none, when it is neither an NSObject nor an NSProxy, or when Firebase
  // does not say.
  [[nodiscard]] objc::id delegate() const;
  // False when Firebase takes none.
  bool setDelegate(objc::id delegate) const;

 private:
  explicit FirebaseMessaging(Found found, Object instance = {}) noexcept
      : Handle(std::move(instance)), found_(found) {}

  Found found_;
};

}  // namespace zib
