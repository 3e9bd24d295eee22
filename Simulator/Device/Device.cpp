#include "Simulator/Device/Device.h"

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Network/Network.h"
#include "Simulator/Network/URLSession.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/XCTest/XCTest.h"

namespace sim {
namespace {

void setUpDocuments(Documents kind, const std::filesystem::path& folder) {
  if (kind == Documents::missing || folder.empty()) {
    foundation::setDocumentsDirectory(std::nullopt);
    return;
  }
  foundation::setDocumentsDirectory(folder.string());
  Timeline::shared().setDocumentsPath(folder.string());
  if (kind == Documents::readOnly) giveUpFilePrivileges();
}

}  // namespace

Device::Device(const DeviceDescription& description, const std::filesystem::path& documents) {
  foundation::setSystemVersion(description.osVersion.major, description.osVersion.minor);
  foundation::install();
  foundation::setMainBundlePath(description.bundlePath);
  foundation::setMainBundleIdentifier(description.bundleIdentifier);
  foundation::setClock([] { return inSeconds(Scheduler::shared().now()); });
  setUpDocuments(description.documents, documents);
  urlsession::install();
  uikit::install(description.application, description.opensURLs, description.asksDelegate);
  usernotifications::install(
      description.answersByItself ? std::optional(description.authorization) : std::nullopt,
      description.bundleIdentifier.has_value());
  if (!description.bundleIdentifier) xctest::install();
}

Device::~Device() {
  foundation::setDocumentsDirectory(std::nullopt);
  Timeline::shared().setDocumentsPath({});
}

void Device::connectTo(Sites sites) {
  network_ = std::make_shared<Network>(std::move(sites));
  urlsession::setNetwork(network_);
}

void Device::settle() { Scheduler::shared().drain(); }

void Device::advance(double seconds) {
  Scheduler& scheduler = Scheduler::shared();
  scheduler.advanceTo(scheduler.now() + inNanoseconds(seconds));
  scheduler.drain();
}

}  // namespace sim
