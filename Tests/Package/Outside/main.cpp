// Hands a token to the module, and prints what the module keeps.

#include <cstdint>
#include <cstdio>
#include <vector>

#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibVersion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

int main() {
  const zib::AutoreleasePool pool;
  ZibMessaging& messaging = ZibMessaging::shared();
  messaging.setPushToken(std::vector<std::uint8_t>{1, 2, 3});
  messaging.setFCMToken("token");
  std::printf("%s %zu %s\n", ZIB_VERSION, messaging.apnsToken()->size(),
              messaging.fcmToken()->c_str());
}
