#include "Simulator/Scenario/DeviceReader.h"

#include <charconv>

#include "Simulator/Scenario/HostReader.h"

namespace sim {
namespace {

SystemVersion readVersion(const Node& node, Reading& reading) {
  const std::string text = node.text();
  const std::size_t dot = text.find('.');
  const auto number = [&](std::string_view digits) -> long {
    long value = -1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    if (!isWhole || value < 0 || digits.front() == '-') node.failType("\"MAJOR.MINOR\"");
    return value;
  };
  if (dot == std::string::npos || dot + 1 == text.size() || dot == 0) {
    node.failType("\"MAJOR.MINOR\"");
  }
  reading.osVersion = {number(std::string_view(text).substr(0, dot)),
                       number(std::string_view(text).substr(dot + 1))};
  return reading.osVersion;
}

struct PlannedAnswer : usernotifications::Answer {
  bool answersByItself = true;
};

const Kind<PlannedAnswer>& authorization() {
  static const Kind<bool> answer{
      [](const Node& node, Reading&) {
        return node.choice({"auto", "manual"}) == 0;
      },
      [] {
        return Json{{"enum", {"auto", "manual"}}};
      },
      [](const bool& isAutomatic) { return Json(isAutomatic ? "auto" : "manual"); }};
  static const Kind<PlannedAnswer> kind = objectOf(answerFields<PlannedAnswer>().optional(
      "answer", &PlannedAnswer::answersByItself, answer,
      "\"auto\": at once; \"manual\": by the step answerAuthorization"));
  return kind;
}

}  // namespace

const Kind<DeviceDescription>& kinds::device() {
  static const Kind<SystemVersion> version{
      &readVersion,
      [] {
        return Json{{"type", "string"}, {"pattern", "^[0-9]+\\.[0-9]+$"}};
      },
      [](const SystemVersion& value) {
        return Json(std::to_string(value.major) + "." + std::to_string(value.minor));
      }};
  using Description = DeviceDescription;
  static const auto record =
      Record<Description>()
          .optional("osVersion", &Description::osVersion, version, "the system's version")
          .optional("bundlePath", &Description::bundlePath, text(),
                    "the main bundle's path; one that ends in .appex is an app extension")
          .optional("application", &Description::application, oneOf<uikit::ApplicationPresence>(),
                    "what there is of the application object")
          .optional("bundleIdentifier", &Description::bundleIdentifier, textOrNull(),
                    "the main bundle's identifier; null, a test process without a host")
          .optional("asksDelegate", &Description::asksDelegate, oneOf<uikit::AsksDelegate>(),
                    "when the application asks its delegate which optional methods it has")
          .custom({"authorization", "how the user answers the request for permission", false,
                   authorization().schema},
                  [](const Node& node, Reading& reading, Description& device) {
                    const PlannedAnswer read = authorization().read(node, reading);
                    device.authorization = read;
                    device.answersByItself = read.answersByItself;
                  })
          .optional("opensURLs", &Description::opensURLs, boolean(),
                    "what the system reports when it was asked to open a URL")
          .optional("documents", &Description::documents, oneOf<Documents>(),
                    "what there is of the Documents directory");
  static const Kind<DeviceDescription> kind{
      [](const Node& node, Reading& reading) {
        DeviceDescription device = record.read(node, reading);
        reading.isApplicationLate = device.application == uikit::ApplicationPresence::late;
        return device;
      },
      [] { return schemaOf(record.fields()); }};
  return kind;
}

const Kind<CoreDescription>& kinds::core() {
  static const auto record =
      Record<CoreDescription>()
          .optional("config", &CoreDescription::config, config(),
                    "the core's configuration; null while there is none")
          .optional("pushConfigEndpoint", &CoreDescription::pushConfigEndpoint, textOrNull(),
                    "the endpoint that the core knows");
  static const Kind<CoreDescription> kind = objectOf(record);
  return kind;
}

}  // namespace sim
