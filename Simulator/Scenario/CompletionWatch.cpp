#include "Simulator/Scenario/CompletionWatch.h"

namespace sim {
namespace {

void reportProblem(const char* code, const std::string& of, const std::string& message) {
  Timeline::shared().add("problem", {{"code", code}, {"of", of}, {"message", message}});
}

}  // namespace

void CompletionWatch::called(Handed& handed, Json fields) {
  fields["of"] = handed.of;
  Timeline::shared().add("completion", fields);
  if (++handed.calls > 1) {
    reportProblem("completionCalledTwice", handed.of,
                  "the completion of " + handed.of + " was called more than once");
  }
}

std::shared_ptr<CompletionWatch::Handed> CompletionWatch::hand(const std::string& of) {
  handed_.push_back(std::make_shared<Handed>());
  handed_.back()->of = of;
  return handed_.back();
}

zib::Block<void()> CompletionWatch::make(const std::string& of) {
  return zib::Block<void()>::from([handed = hand(of)] { called(*handed, Json::object()); });
}

zib::Block<void(zib::objc::UInteger)> CompletionWatch::makeWithOptions(const std::string& of) {
  return zib::Block<void(zib::objc::UInteger)>::from(
      [handed = hand(of)](zib::objc::UInteger options) {
        called(*handed, {{"options", options}});
      });
}

std::function<void(const Json& fields)> CompletionWatch::watch(const std::string& of) {
  return [handed = hand(of)](const Json& fields) { called(*handed, fields); };
}

void CompletionWatch::reportMissing() const {
  for (const auto& handed : handed_) {
    if (handed->calls == 0) {
      reportProblem("completionNeverCalled", handed->of,
                    "the completion of " + handed->of + " was never called");
    }
  }
}

}  // namespace sim
