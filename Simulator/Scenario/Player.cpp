#include "Simulator/Scenario/Player.h"

#include "Simulator/Device/Documents.h"
#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Scenario/Stage.h"
#include "Simulator/Scenario/Verbs.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace sim {

void play(const Scenario& scenario, const std::filesystem::path& documents) {
  const zib::AutoreleasePool pool;
  Stage stage(scenario, documents);
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
