#include "Recorder/zib_record.h"

#ifdef ZIB_RECORDS_CALLS

#include <atomic>
#include <memory>

#include "Recorder/RecordedScenario.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace zib::recorder {
namespace {

// Set once, and never released: calls may come until the process ends.
constinit std::atomic<RecordedScenario*> current{nullptr};

RecordedScenario& recording() { return *current.load(std::memory_order_acquire); }

constexpr CallListener listener{
    [](const char* operation, const ValueMap& arguments) {
      recording().hostCalled(operation, arguments);
    },
    [](Row row, objc::id subject, objc::id more) { recording().systemCalled(row, subject, more); },
    [] { recording().look(); },
    [](bool isGranted, const std::optional<Error>& error) {
      recording().answered(isGranted, error);
    },
    [](const void* exchange, const URL& url) { recording().requested(exchange, url); },
    [](const void* exchange, const URLReply& reply) { recording().replied(exchange, reply); },
    [](bool isHandled) { recording().urlDelegateAnswered(isHandled); },
    [] { recording().handlerBegins(); },
    [] { recording().handlerEnded(); },
};

bool record(const char* path, Texts texts) noexcept {
  return containedOr(false, "zib_record", [&] {
    const AutoreleasePool pool;
    if (path == nullptr || current.load(std::memory_order_acquire) != nullptr) return false;
    auto begun = std::make_unique<RecordedScenario>(path, texts);
    if (!begun->begin()) return false;
    current.store(begun.release(), std::memory_order_release);
    zib::recording::listener.store(&listener, std::memory_order_release);
    return true;
  });
}

}  // namespace
}  // namespace zib::recorder

bool zib_record(const char* path) {
  return zib::recorder::record(path, zib::recorder::Texts::redacted);
}

bool zib_record_with_texts(const char* path) {
  return zib::recorder::record(path, zib::recorder::Texts::asTheyAre);
}

#else

bool zib_record(const char*) { return false; }
bool zib_record_with_texts(const char*) { return false; }

#endif
