#include "Simulator/Json/Values.h"

#include "Simulator/Foundation/Base64.h"
#include "Simulator/Json/TextForms.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace sim {
namespace {

struct JsonMaker {
  Json operator()(zib::Null) const { return nullptr; }
  Json operator()(const zib::Bytes& bytes) const { return base64From(bytes); }
  Json operator()(zib::Date date) const { return iso8601(date.secondsSince1970); }
  Json operator()(const zib::Array& array) const {
    Json result = Json::array();
    for (const zib::Value& element : array) result.push_back(jsonFrom(element));
    return result;
  }
  Json operator()(const zib::ValueMap& map) const { return jsonFrom(map); }
  template <class T>
  Json operator()(const T& value) const {
    return value;
  }
};

}  // namespace

Json jsonFrom(const zib::Value& value) { return value.visit(JsonMaker()); }

Json jsonFrom(const zib::ValueMap& map) {
  Json result = Json::object();
  for (const zib::Member& member : map) result[member.key] = jsonFrom(member.value);
  return result;
}

Json jsonFrom(const zib::Error& error) {
  return {{"domain", error.domain}, {"code", error.code}, {"description", error.description}};
}

zib::Value valueOf(zib::objc::id object) {
  constexpr zib::Extent deepest{.levels = zib::maximumNesting, .values = 100'000'000};
  const auto value = zib::valueFrom(object, deepest);
  return value ? *value : zib::Value();
}

zib::ValueMap valuesOf(const zib::Dictionary& dictionary) {
  const zib::Value value = valueOf(dictionary.native());
  const auto* map = value.get<zib::ValueMap>();
  return map == nullptr ? zib::ValueMap() : *map;
}

Json jsonFromObject(zib::objc::id object) { return jsonFrom(valueOf(object)); }

std::string hexFrom(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string hex;
  for (const std::uint8_t byte : bytes) hex.append({digits[byte >> 4U], digits[byte & 0xFU]});
  return hex;
}

zib::Value valueFromJson(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_integer:
      return json.get<std::int64_t>();
    case Json::value_t::number_unsigned:
      return json.get<std::uint64_t>();
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::string:
      return json.get_ref<const std::string&>();
    case Json::value_t::array: {
      zib::Array array;
      for (const Json& element : json) array.push_back(valueFromJson(element));
      return array;
    }
    case Json::value_t::object: {
      zib::ValueMap map;
      for (const auto& [key, value] : json.items()) map.append(key, valueFromJson(value));
      return map;
    }
    default:
      return zib::Null{};
  }
}

}  // namespace sim
