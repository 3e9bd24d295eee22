#include "ZibCoreBoundary/ZibStorage.h"

#include "ZibCoreBoundary/InstalledOnce.h"

namespace {

class SilentStorage final : public ZibStorage {
 public:
  void savePushPermission(bool) override {}
  void saveFCMToken(std::string_view) override {}
};

constinit zib::InstalledOnce<ZibStorage> installed;

}  // namespace

ZibStorage& ZibStorage::shared() noexcept { return installed.orElse<SilentStorage>(); }

bool ZibStorage::install(std::unique_ptr<ZibStorage> storage) noexcept {
  return installed.install(std::move(storage));
}
