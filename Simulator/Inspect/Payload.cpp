#include "Simulator/Inspect/Payload.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include "Simulator/Json/Values.h"
#include "Simulator/Scenario/JsonDocument.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "ZibPlatform/Foundation/JSON.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace sim {
namespace {

constexpr const char* allowedPayload = "a JSON object, such as an .apns file";

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::vector<std::string> placesOf(const std::vector<Way>& ways) {
  std::vector<std::string> places;
  for (const Way& way : ways) {
    std::string place;
    for (const std::string& key : way) place += (place.empty() ? "" : ".") + key;
    if (std::find(places.begin(), places.end(), place) == places.end()) places.push_back(place);
  }
  return places;
}

// A text, a number or a word alone, which is JSON and which the platform refuses as such.
std::optional<Json> valueAlone(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos || text[first] == '{' || text[first] == '[') return {};
  Json value = Json::parse(text, nullptr, false);
  return value.is_discarded() ? std::nullopt : std::optional(std::move(value));
}

}  // namespace

Payload readPayload(std::string_view text) {
  const std::string inUTF8 = textOfDocument(text);
  const auto object = zib::parseJSON(bytesOf(text));
  if (!object) {
    const auto value = valueAlone(inUTF8);
    throw ScenarioError("", value ? "got " + kindOf(*value) : object.error().description,
                        allowedPayload);
  }
  Payload payload;
  payload.json = jsonFromObject(object->raw());
  if (!payload.json.is_object()) {
    throw ScenarioError("", "got " + kindOf(payload.json), allowedPayload);
  }
  removeTargetBundle(payload.json);
  payload.isUTF8 = text.ends_with(inUTF8);
  payload.repeatedKeys = placesOf(repeatedKeys(inUTF8));
  payload.size = payload.json.dump().size();
  payload.userInfo = zib::Dictionary::from(*valueFromJson(payload.json).get<zib::ValueMap>());
  return payload;
}

std::string kindOf(const Json& value) {
  switch (value.type()) {
    case Json::value_t::null:
      return "null";
    case Json::value_t::boolean:
      return "true or false";
    case Json::value_t::object:
      return "an object";
    case Json::value_t::array:
      return "a list";
    case Json::value_t::string:
      return "a text";
    default:
      return "a number";
  }
}

std::string inQuotes(std::string_view text) {
  constexpr std::size_t longest = 80;
  const std::string_view shown = zib::firstCharacters(text, longest);
  const std::string shortened = std::string(shown) + (shown.size() < text.size() ? "…" : "");
  return Json(shortened).dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace sim
