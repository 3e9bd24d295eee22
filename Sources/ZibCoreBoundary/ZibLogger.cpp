#include "ZibCoreBoundary/ZibLogger.h"

#include "ZibCoreBoundary/InstalledOnce.h"

namespace {

class SilentLogger final : public ZibLogger {
 public:
  void log(std::string_view) override {}
  void error(std::string_view, const std::optional<zib::Error>&) override {}
};

constinit zib::InstalledOnce<ZibLogger> installed;

}  // namespace

ZibLogger& ZibLogger::shared() noexcept { return installed.orElse<SilentLogger>(); }

bool ZibLogger::isInstalled() noexcept { return !installed.isEmpty(); }

bool ZibLogger::install(std::unique_ptr<ZibLogger> logger) noexcept {
  return installed.install(std::move(logger));
}
