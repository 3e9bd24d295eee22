// The section "host" of a scenario, and what steps describe in the same way.

#pragma once

#include "Simulator/Scenario/Kinds.h"
#include "Simulator/Scenario/Record.h"
#include "Simulator/Scenario/Scenario.h"

namespace sim {

// JSON Schema of a class of the host's.
Json hostClassSchema();

// Fields that several objects have, in one that may have others.
template <class T>
Record<T> sceneRecord();
template <class T>
Record<T> firebaseRecord();

namespace kinds {

const Kind<HostDescription>& host();
const Kind<std::optional<CoreConfig>>& config();
// Null stands for none.
const Kind<DelegateDescription>& delegate();
// It can be the application delegate, too.
const Kind<DelegateDescription>& notificationDelegate();
const Kind<std::optional<FirebaseDescription>>& firebaseOrNull();

}  // namespace kinds

template <class T>
Record<T> sceneRecord() {
  return Record<T>()
      .optional("window", &SceneDescription::hasWindow, kinds::boolean(),
                "whether it is a window scene")
      .optional("delegate", &SceneDescription::delegate, kinds::delegate(), "its delegate");
}

template <class T>
Record<T> firebaseRecord() {
  const auto piece = [](bool firebase::Pieces::*member) {
    return
        [member](const Node& node, Reading&, T& result) { result.pieces.*member = node.boolean(); };
  };
  const auto schema = [] { return Json{{"type", "boolean"}, {"default", true}}; };
  return Record<T>()
      .custom({"classMethod", "whether the class hands out the messaging object", false, schema},
              piece(&firebase::Pieces::classMethod))
      .custom({"instance", "whether there is a messaging object", false, schema},
              piece(&firebase::Pieces::instance))
      .custom({"delegateProperty", "whether it has a delegate", false, schema},
              piece(&firebase::Pieces::delegateProperty))
      .custom({"settable", "whether the delegate can be set", false, schema},
              piece(&firebase::Pieces::settable))
      .optional("delegate", &FirebaseDescription::delegate, kinds::delegate(),
                "its delegate; left out, it stays as it is");
}

}  // namespace sim
