// What the inline code of public headers needs from the module on a host's behalf, beyond the
// functions that a host names itself. The check compiles it as a host would.

#include <memory>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibMessagingDelegate.h"

namespace {

class Delegate final : public ZibMessagingDelegate {};

class Storage final : public ZibStorage {
 public:
  void savePushPermission(bool) override {}
  void saveFCMToken(std::string_view) override {}
};

[[gnu::used]] void install(ZibMessaging& messaging) {
  messaging.setDelegate(std::make_shared<Delegate>());
  ZibStorage::install(std::make_unique<Storage>());
}

[[gnu::used]] bool useValues(const zib::Dictionary& userInfo, std::uint64_t number) {
  zib::ValueMap map{{"number", number}};
  zib::ValueMap copy(map);
  const zib::ValueMap moved(std::move(copy));
  map = moved;
  return userInfo.text(zib::constantString<"key">) && map == moved;
}

}  // namespace
