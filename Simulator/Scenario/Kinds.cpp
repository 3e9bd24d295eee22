#include "Simulator/Scenario/Kinds.h"

#include <algorithm>

#include "Simulator/Foundation/URLText.h"
#include "Simulator/Json/TextForms.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Scenario/Record.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace sim::kinds {
namespace {

Schema schemaOfTypeOrNull(const char* type) {
  return [type] { return Json{{"type", {type, "null"}}}; };
}

Schema schemaOfIntegers(std::int64_t from) {
  return [from] { return Json{{"type", "integer"}, {"minimum", from}, {"maximum", INT64_MAX}}; };
}

Schema schemaOfTexts(const char* pattern) {
  return [pattern] { return Json{{"type", "string"}, {"pattern", pattern}}; };
}

template <class T>
Json plain(const T& value) {
  return value;
}

template <class T>
Json plainOrNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json();
}

// How deep containers are nested; counts no further than the limit, so the recursion ends.
int nesting(const Json& value, int limit) {
  if (!value.is_structured()) return 0;
  if (limit == 0) return 1;
  int deepest = 0;
  for (const Json& element : value) deepest = std::max(deepest, nesting(element, limit - 1));
  return deepest + 1;
}

zib::ValueMap readPayload(const Node& node, Reading& /*reading*/) {
  if (!node.value().is_object()) node.failType("an object");
  if (nesting(node.value(), zib::maximumNesting) > zib::maximumNesting) {
    node.fail("nested too deep", std::to_string(zib::maximumNesting) + " levels");
  }
  return *valueFromJson(node.value()).get<zib::ValueMap>();
}

Kind<std::int64_t> integer() {
  return {[](const Node& node, Reading&) { return node.integer(); }, schemaOfIntegers(INT64_MIN)};
}

}  // namespace

Schema schemaOfList(Schema element) {
  return [element = std::move(element)] { return Json{{"type", "array"}, {"items", element()}}; };
}

Schema schemaOfMap(std::vector<std::string_view> keys, Schema value) {
  return [keys = std::move(keys), value = std::move(value)] {
    Json properties = Json::object();
    for (const std::string_view key : keys) properties[std::string(key)] = value();
    return Json{{"type", "object"}, {"properties", properties}, {"additionalProperties", false}};
  };
}

const Kind<bool>& boolean() {
  static const Kind<bool> kind{[](const Node& node, Reading&) { return node.boolean(); },
                               schemaOfType("boolean"), &plain<bool>};
  return kind;
}

const Kind<std::optional<bool>>& booleanOrNull() {
  static const Kind<std::optional<bool>> kind{
      [](const Node& node, Reading&) { return node.booleanOrNull(); },
      schemaOfTypeOrNull("boolean"), &plainOrNull<bool>};
  return kind;
}

const Kind<std::string>& text() {
  static const Kind<std::string> kind{[](const Node& node, Reading&) { return node.text(); },
                                      schemaOfType("string"), &plain<std::string>};
  return kind;
}

const Kind<std::optional<std::string>>& textOrNull() {
  static const Kind<std::optional<std::string>> kind{
      [](const Node& node, Reading&) { return node.textOrNull(); }, schemaOfTypeOrNull("string"),
      &plainOrNull<std::string>};
  return kind;
}

const Kind<double>& seconds() {
  static const Kind<double> kind{
      [](const Node& node, Reading&) { return node.nonNegativeNumber(); },
      [] {
        return Json{{"type", "number"}, {"minimum", 0}, {"maximum", Node::greatestNumber}};
      }};
  return kind;
}

const Kind<zib::objc::UInteger>& natural() {
  static const Kind<zib::objc::UInteger> kind{
      [](const Node& node, Reading&) {
        if (node.integer() < 0) node.failType("a number of options from 0");
        return static_cast<zib::objc::UInteger>(node.integer());
      },
      schemaOfIntegers(0), &plain<zib::objc::UInteger>};
  return kind;
}

const Kind<zib::Bytes>& hex() {
  static const Kind<zib::Bytes> kind{[](const Node& node, Reading&) {
                                       auto bytes = bytesFromHex(node.text());
                                       if (!bytes)
                                         node.failType("an even number of hexadecimal digits");
                                       return *std::move(bytes);
                                     },
                                     schemaOfTexts("^([0-9A-Fa-f]{2})*$")};
  return kind;
}

const Kind<std::optional<zib::Error>>& error() {
  static const auto record =
      Record<zib::Error>()
          .required("domain", &zib::Error::domain, text(), "its domain")
          .required("code", &zib::Error::code, integer(), "its code")
          .required("description", &zib::Error::description, text(), "what it says");
  static const Kind<std::optional<zib::Error>> kind = orNull(objectOf(record));
  return kind;
}

const Kind<zib::ValueMap>& payload() {
  static const Kind<zib::ValueMap> kind{&readPayload, schemaOfType("object")};
  return kind;
}

const Kind<std::optional<zib::ValueMap>>& payloadOrNull() {
  static const Kind<std::optional<zib::ValueMap>> kind = orNull(payload());
  return kind;
}

const Kind<std::string>& url() {
  // Where each may stand is more than a pattern should say, and depends on the system's version.
  constexpr const char* charactersOfURLs =
      R"(^(?:[A-Za-z0-9._~:/?#\[\]@!$&'()*+,;=-]|%[0-9A-Fa-f]{2})+$)";
  static const Kind<std::string> kind{[](const Node& node, Reading& reading) {
                                        constexpr long firstStrict = 17;
                                        const auto parsed = reading.osVersion.major < firstStrict
                                                                ? parseLegacyURLText(node.text())
                                                                : parseURLText(node.text());
                                        if (!parsed) node.failType("a URL");
                                        return node.text();
                                      },
                                      schemaOfTexts(charactersOfURLs)};
  return kind;
}

}  // namespace sim::kinds
