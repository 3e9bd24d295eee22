// Asks the user for permission to notify, and the system for a device token once it is granted.

#pragma once

#include <memory>

#include "ZibPlatform/UIKit/Application.h"

class ZibMessaging;

namespace zib {

// The answer arrives later, on the main thread. What is stored, logged and asked of the system does
// not depend on whether `messaging` still exists then.
class Authorization {
 public:
  Authorization() = delete;

  static void request(const std::weak_ptr<ZibMessaging>& messaging, const Application& application);

 private:
  struct Answer;

  static void take(const Answer& answer);
};

}  // namespace zib
