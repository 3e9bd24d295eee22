#include "ZibCoreBoundary/Zib.h"

#include "ZibCoreBoundary/InstalledOnce.h"

namespace {

class SilentCore final : public Zib {
 public:
  [[nodiscard]] std::optional<ZibConfig> config() const override { return std::nullopt; }
  void trackSelfDescribingEvent(std::string_view, const zib::ValueMap&) override {}
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    return std::nullopt;
  }
  void registerPushToken(std::string_view) override {}
};

constinit zib::InstalledOnce<Zib> installed;

}  // namespace

Zib& Zib::shared() noexcept { return installed.orElse<SilentCore>(); }

bool Zib::isInstalled() noexcept { return !installed.isEmpty(); }

bool Zib::install(std::unique_ptr<Zib> core) noexcept { return installed.install(std::move(core)); }
