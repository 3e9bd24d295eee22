#include "Simulator/Scenario/Player.h"

#include <stdexcept>

#ifdef ZIB_RECORDS_CALLS
#include "Recorder/zib_record.h"
#endif
#include "Simulator/Device/Documents.h"
#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Scenario/Stage.h"
#include "Simulator/Scenario/Verbs.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace sim {
namespace {

void beginRecording(const RecordingFile& file) {
#ifdef ZIB_RECORDS_CALLS
  const bool isRecording =
      file.hasTexts ? zib_record_with_texts(file.path.c_str()) : zib_record(file.path.c_str());
#else
  const bool isRecording = false;
#endif
  if (!isRecording) throw std::runtime_error("nothing can be recorded to " + file.path);
}

}  // namespace

void play(const Scenario& scenario, const std::filesystem::path& documents) {
  const zib::AutoreleasePool pool;
  Stage stage(scenario, documents);
  if (scenario.recording) beginRecording(*scenario.recording);
  const DocumentsWatch documentsWatch(documents);
  for (std::size_t index = 0; index < scenario.steps.size(); ++index) {
    const Step& step = scenario.steps[index];
    Scheduler::shared().runOn(step.thread, [&] {
      Timeline::shared().add("step", {{"index", index}, {"do", step.verb->name}});
      step.verb->play(stage, step.action);
    });
    stage.endStep();
    documentsWatch.recordWritten();
  }
  stage.completions().reportMissing();
}

}  // namespace sim
