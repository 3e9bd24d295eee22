#include "Simulator/CommandLine/RecordCommand.h"

#include <filesystem>
#include <iostream>

#include "Simulator/CommandLine/InputAndOutput.h"
#include "Simulator/CommandLine/ScenarioFiles.h"
#include "Simulator/CommandLine/Usage.h"
#include "Simulator/Device/Documents.h"
#include "Simulator/Scenario/PlayInProcess.h"

namespace sim {
namespace {

#ifdef ZIB_RECORDS_CALLS
constexpr bool canRecord = true;
#else
constexpr bool canRecord = false;
#endif

// A folder for the time of the recording.
class TemporaryFolder {
 public:
  void letOthersWrite() const {
    std::filesystem::permissions(folder_.path(), std::filesystem::perms::all);
  }
  [[nodiscard]] std::string file(const char* name) const { return folder_.path() / name; }

 private:
  DocumentsFolder folder_{Documents::writable};
};

}  // namespace

int recordScenario(const RecordOptions& options) {
  if (!canRecord) {
    throw UsageError(
        "record: a release has nothing to record with; allowed: zibsim of a debug build");
  }
  std::vector<ScenarioFile> files = readScenarioFiles({options.file});
  if (files.size() != 1) {
    throw UsageError(options.file + ": (root): there are " + std::to_string(files.size()) +
                     " scenarios; allowed: one");
  }
  requireApart(options.output, {options.file});
  Output output(options.output);
  const TemporaryFolder folder;
  const std::string recorded = folder.file("recording.json");
  Scenario& scenario = files.front().scenario;
  // Where the device cannot write its documents, its process is a user without rights.
  if (scenario.device.documents == Documents::readOnly) folder.letOthersWrite();
  scenario.recording = RecordingFile{recorded, options.hasTexts};
  const auto death = playInProcess(scenario, [](const Json&) {});
  if (std::filesystem::exists(recorded)) {
    output.stream() << readInput(recorded, "the recording");
    output.finish();
  }
  if (!death) return allAsExpected;
  std::cerr << "zibsim: the process of \"" << scenario.name << "\" died: " << *death << '\n';
  return processDied;
}

}  // namespace sim
