// A push payload of any kind, through the module's event and link search and what zibsim says of
// it.

#include <algorithm>
#include <cstdint>
#include <optional>

#include "Simulator/Inspect/Inspection.h"
#include "Simulator/Inspect/InspectionText.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "Tests/Fuzz/Target.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/JSON.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace {

constexpr std::size_t eventFields = 14;

bool isTextOrNull(const zib::Member& field) {
  return field.value.get<std::string>() != nullptr || field.value.get<zib::Null>() != nullptr;
}

void requireEvent(const zib::Object& root) {
  const zib::Dictionary userInfo = zib::Dictionary::retained(root.raw());
  const zib::ValueMap event =
      ZibPayloadBuilder::createNotificationPayload(userInfo, "notification-clicked");
  fuzz::require(event.size() == eventFields, "an event has fourteen fields");
  fuzz::require(std::all_of(event.begin(), event.end(), isTextOrNull),
                "each field is a text or the null marker");
  const auto values = userInfo.values();
  if (!values) return;
  const zib::Dictionary copy = zib::Dictionary::from(*values);
  fuzz::require(*copy.values() == *values, "values of a payload make an equal payload");
}

std::optional<sim::Inspection> inspected(std::string_view input) {
  try {
    return sim::inspect(input, "notification-clicked");
  } catch (const sim::ScenarioError&) {
    return std::nullopt;
  }
}

}  // namespace

void fuzz::prepare() {}

void fuzz::run(std::string_view input) {
  const auto root =
      zib::parseJSON({reinterpret_cast<const std::uint8_t*>(input.data()), input.size()});
  if (root) requireEvent(*root);
  const auto inspection = inspected(input);
  if (!inspection) return;
  require(bool(root), "what is inspected is JSON for the platform");
  require(inspection->event.size() == eventFields, "an inspected event has fourteen fields");
  require(!inspection->link.url || inspection->link.candidate, "a URL comes from a candidate");
  require(!sim::textFrom(*inspection).empty(), "an inspection can be read");
  require(!sim::jsonFrom(*inspection).dump().empty(), "an inspection can be written");
}
