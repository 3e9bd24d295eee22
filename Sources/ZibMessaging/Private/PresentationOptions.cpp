#include "ZibMessaging/Private/PresentationOptions.h"

#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace zib {

objc::UInteger foregroundPresentationOptions() {
  namespace options = notificationOptions;
  static const bool hasBanners = isSystemAtLeast(14, 0);
  return (hasBanners ? options::banner : options::alert) | options::sound | options::badge;
}

}  // namespace zib
