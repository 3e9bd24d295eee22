// Completions that the system hands out, and whether they come back exactly once.

#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/ObjectiveC/Block.h"

namespace sim {

// Main thread, but the completions may be called on any.
class CompletionWatch {
 public:
  // A completion of the callback of that name. Each call is recorded, the second as a problem too.
  zib::Block<void()> make(const std::string& of);
  // The same for a completion that takes presentation options.
  zib::Block<void(zib::objc::UInteger)> makeWithOptions(const std::string& of);
  // For a completion that is no block.
  std::function<void(const Json& fields)> watch(const std::string& of);

  // Records a problem for each that was never called.
  void reportMissing() const;

 private:
  struct Handed {
    std::string of;
    std::atomic<int> calls{0};
  };

  static void called(Handed& handed, Json fields);
  std::shared_ptr<Handed> hand(const std::string& of);

  std::vector<std::shared_ptr<Handed>> handed_;
};

}  // namespace sim
