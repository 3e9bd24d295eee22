#include "Simulator/CommandLine/InspectCommand.h"

#include <filesystem>

#include "Simulator/CommandLine/InputAndOutput.h"
#include "Simulator/CommandLine/Usage.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Inspect/InspectionText.h"
#include "Simulator/Page/InspectionView.h"
#include "Simulator/Page/PageDocument.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace sim {
namespace {

std::string titleOf(const std::string& file) {
  return file == standardInput ? "A payload" : std::filesystem::path(file).filename().string();
}

std::string rendered(const Inspection& inspection, const InspectOptions& options) {
  if (options.format == "json") return jsonFrom(inspection).dump(2) + "\n";
  if (options.format == "html") {
    return standaloneDocument(titleOf(options.file), viewOf(inspection));
  }
  return textFrom(inspection);
}

}  // namespace

int inspectPayload(const InspectOptions& options) {
  const std::string text =
      readInput(options.file, "a payload in JSON, such as an .apns file, or - for standard input");
  foundation::install();
  const zib::AutoreleasePool pool;
  Output output({});
  try {
    output.stream() << rendered(inspect(text, options.eventType), options);
  } catch (const ScenarioError& error) {
    throw UsageError(options.file + ": " + error.what());
  }
  output.finish();
  return allAsExpected;
}

}  // namespace sim
