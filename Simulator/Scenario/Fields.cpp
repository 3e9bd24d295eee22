#include "Simulator/Scenario/Fields.h"

#include "Simulator/Scenario/Reader.h"
#include "Simulator/Timeline/TextForms.h"

namespace sim {

zib::ValueMap userInfoOf(const Json& fields) {
  return *valueFromJson(fields.at("userInfo")).get<zib::ValueMap>();
}

zib::Dictionary dictionaryOf(const Json& fields) {
  return zib::Dictionary::from(userInfoOf(fields));
}

zib::Bytes bytesOf(const Json& fields) {
  return bytesFromHex(fields.at("hex").get<std::string>()).value();
}

zib::Error errorOf(const Json& fields) { return readError(Node(fields.at("error"), "/error")); }

zib::URL urlFrom(const std::string& text) { return zib::URL::parse(text).value(); }

std::string actionOf(const Json& fields) {
  return fields.value("action", "com.apple.UNNotificationDefaultActionIdentifier");
}

}  // namespace sim
