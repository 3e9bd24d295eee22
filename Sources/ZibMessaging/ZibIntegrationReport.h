// Who stands between the system and the host's delegates: for support, and for hosts that wonder
// where a callback went.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZibPlatform/ObjectiveC/FunctionName.h"

namespace zib {

struct IntegrationReport {
  enum class State : std::uint8_t {
    none,        // nothing: it has the callback only if it is the delegate itself
    swapped,     // the delegate's method was replaced
    added,       // the delegate had no such method
    forwarding,  // it had none, but answers by forwarding to another object
  };

  // One function that a callback runs through, as far as it can be told.
  using Function = FunctionName;

  // One of the methods that the module intercepts, on the delegate that the system has now.
  struct Row {
    std::string_view method;
    std::optional<std::string> delegateClass = {};
    State state = State::none;
    // The outermost, which the system calls, first.
    std::vector<Function> chain = {};
    // What a host may want to know, in plain words.
    std::vector<std::string> remarks = {};
  };

  // All texts are UTF-8, whatever bytes a class or a function is named with.
  std::vector<Row> rows;

  // All of it, for a support ticket. No token, link or payload is in it.
  [[nodiscard]] std::string text() const;
};

std::string_view nameOf(IntegrationReport::State state) noexcept;

// How things are now. Main thread.
IntegrationReport integrationReport() noexcept;

}  // namespace zib
