#include "Simulator/Scenario/Reader.h"

#include "Simulator/Scenario/DeviceReader.h"
#include "Simulator/Scenario/EntryKinds.h"
#include "Simulator/Scenario/ExpectationReader.h"
#include "Simulator/Scenario/HostReader.h"
#include "Simulator/Scenario/JsonDocument.h"
#include "Simulator/Scenario/NetworkReader.h"
#include "Simulator/Scenario/Verbs.h"

namespace sim {
namespace {

// In the order in which the sections are read: what steps may refer to comes before them.
const Record<Scenario>& scenarioRecord() {
  static const auto ignored = [](const Node& node, Reading&, Scenario&) {
    static_cast<void>(node.text());
  };
  static const auto record =
      Record<Scenario>()
          .optional("name", &Scenario::name, kinds::text(), "for people; left out, the file's name")
          .optional("device", &Scenario::device, kinds::device(), "the device")
          .optional("core", &Scenario::core, kinds::core(), "the core library")
          .optional("host", &Scenario::host, kinds::host(), "the host app")
          .optional("network", &Scenario::network, kinds::network(),
                    "host names, the paths that they serve, and the answer to each")
          .required("steps", &Scenario::steps, kinds::listOf(kinds::step()), "what happens")
          .optional("expect", &Scenario::expectations, kinds::expectations(),
                    "what the timeline has to hold")
          .custom(
              {"$schema", "the schema of this file, for editors", false, schemaOfType("string")},
              ignored);
  return record;
}

// A host that is left out is one of which nothing is said.
Json withHost(Json scenario) {
  if (scenario.is_object()) scenario.emplace("host", Json::object());
  return scenario;
}

}  // namespace

Scenario readScenario(std::string_view text, const std::string& defaultName,
                      const std::filesystem::path& folder) {
  const Json json = withHost(parseDocument(text));
  const Node root(json, "");
  Reading reading;
  reading.folder = folder;
  Scenario scenario;
  reading.collectErrorOf([&] { scenario = scenarioRecord().read(root, reading); });
  if (!reading.errors.empty()) throw ScenarioErrors(std::move(reading.errors));
  if (!root.find("name")) scenario.name = defaultName;
  scenario.hostClasses = std::move(reading.classes);
  return scenario;
}

Json scenarioSchema() {
  Json schema = schemaOf(scenarioRecord().fields());
  schema["$schema"] = "https://json-schema.org/draft/2020-12/schema";
  schema["title"] = "Scenario of zibsim";
  schema["$defs"] = {{"delegate", hostClassSchema()}, {"entry", entryPatternSchema()}};
  return schema;
}

}  // namespace sim
