#include "ZibMessaging/Private/EventSchema.h"

#include <algorithm>
#include <memory>
#include <string>

#include "ZibCoreBoundary/InstalledOnce.h"
#include "ZibPlatform/Foundation/Strings.h"

// A build sets it with -DZIB_EVENT_VENDOR.
#if !defined(ZIB_EVENT_VENDOR)
#define ZIB_EVENT_VENDOR "com.zib"
#endif

namespace zib {
namespace {

struct Schema {
  explicit Schema(std::string_view vendor = ZIB_EVENT_VENDOR)
      : uri(joined("iglu:", vendor, "/notification_event/jsonschema/3-0-0")) {}

  std::string uri;
};

constinit InstalledOnce<const Schema> installed;

// What a vendor may consist of in the URI of a schema.
bool isVendorCharacter(char character) {
  constexpr std::string_view punctuation = ".-_";
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') ||
         punctuation.find(character) != std::string_view::npos;
}

}  // namespace

std::string_view notificationEventSchemaURI() noexcept {
  return installed.orElse<const Schema>().uri;
}

VendorOutcome setEventVendor(std::string_view vendor) {
  if (vendor.empty() || !std::all_of(vendor.begin(), vendor.end(), isVendorCharacter)) {
    return VendorOutcome::isNoVendor;
  }
  return installed.install(std::make_unique<const Schema>(vendor)) ? VendorOutcome::set
                                                                   : VendorOutcome::isSetAlready;
}

}  // namespace zib
