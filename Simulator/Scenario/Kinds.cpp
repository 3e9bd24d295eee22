#include "Simulator/Scenario/Kinds.h"

#include <algorithm>

#include "Simulator/Foundation/URLText.h"
#include "Simulator/Json/TextForms.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Scenario/Record.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace sim::kinds {
namespace {

Json schemaOfType(const char* type) { return {{"type", type}}; }
Json schemaOrNull(const char* type) { return {{"type", {type, "null"}}}; }

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
  return {[](const Node& node, Reading&) { return node.integer(); },
          {{"type", "integer"}, {"minimum", INT64_MIN}, {"maximum", INT64_MAX}}};
}

}  // namespace

const Kind<bool>& boolean() {
  static const Kind<bool> kind{[](const Node& node, Reading&) { return node.boolean(); },
                               schemaOfType("boolean"), &plain<bool>};
  return kind;
}

const Kind<std::optional<bool>>& booleanOrNull() {
  static const Kind<std::optional<bool>> kind{
      [](const Node& node, Reading&) { return node.booleanOrNull(); }, schemaOrNull("boolean"),
      &plainOrNull<bool>};
  return kind;
}

const Kind<std::string>& text() {
  static const Kind<std::string> kind{[](const Node& node, Reading&) { return node.text(); },
                                      schemaOfType("string"), &plain<std::string>};
  return kind;
}

const Kind<std::optional<std::string>>& textOrNull() {
  static const Kind<std::optional<std::string>> kind{
      [](const Node& node, Reading&) { return node.textOrNull(); }, schemaOrNull("string"),
      &plainOrNull<std::string>};
  return kind;
}

const Kind<double>& seconds() {
  static const Kind<double> kind{
      [](const Node& node, Reading&) { return node.nonNegativeNumber(); },
      {{"type", "number"}, {"minimum", 0}, {"maximum", Node::greatestNumber}}};
  return kind;
}

const Kind<zib::objc::UInteger>& natural() {
  static const Kind<zib::objc::UInteger> kind{
      [](const Node& node, Reading&) {
        if (node.integer() < 0) node.failType("a number of options from 0");
        return static_cast<zib::objc::UInteger>(node.integer());
      },
      {{"type", "integer"}, {"minimum", 0}, {"maximum", INT64_MAX}},
      &plain<zib::objc::UInteger>};
  return kind;
}

const Kind<zib::Bytes>& hex() {
  static const Kind<zib::Bytes> kind{[](const Node& node, Reading&) {
                                       auto bytes = bytesFromHex(node.text());
                                       if (!bytes)
                                         node.failType("an even number of hexadecimal digits");
                                       return *std::move(bytes);
                                     },
                                     {{"type", "string"}, {"pattern", "^([0-9A-Fa-f]{2})*$"}}};
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
                                      {{"type", "string"}, {"pattern", charactersOfURLs}}};
  return kind;
}

}  // namespace sim::kinds
