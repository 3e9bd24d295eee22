// The sections "device" and "core" of a scenario.

#pragma once

#include "Simulator/Scenario/Kinds.h"
#include "Simulator/Scenario/Record.h"
#include "Simulator/Scenario/Scenario.h"

namespace sim {

// The fields of the user's answer to a request for permission, in an object that may have others.
template <class T>
Record<T> answerFields() {
  using usernotifications::Answer;
  return Record<T>()
      .optional("granted", &Answer::granted, kinds::boolean(), "whether the user says yes")
      .optional("error", &Answer::error, kinds::error(), "the error that comes with the answer");
}

namespace kinds {

const Kind<DeviceDescription>& device();
const Kind<CoreDescription>& core();

}  // namespace kinds
}  // namespace sim
