// What the platform and the host call, for a recorder that listens (Recorder): in a build with
// ZIB_RECORDS_CALLS, as debug builds have. Another has nothing of it.

#pragma once

#include "ZibMessaging/Private/Interception.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/ObjectiveC/Native.h"

#ifdef ZIB_RECORDS_CALLS
#include <atomic>
#include <optional>

#include "ZibMessaging/Private/CallbackInProgress.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/URLSession.h"
#include "ZibPlatform/Foundation/Value.h"
#endif

namespace zib {

namespace recording {

// The null marker for what is deeper or larger than values() takes.
inline Value valuesOf(const Dictionary& dictionary) {
  const auto values = dictionary.values();
  return values ? Value(*values) : Value();
}

}  // namespace recording

#ifndef ZIB_RECORDS_CALLS

struct [[maybe_unused]] RecordedCall {
  template <class... Arguments>
  explicit RecordedCall(Arguments&&... /*arguments*/) noexcept {}
  static RecordedCall unlessInHand(Row, objc::id) noexcept { return RecordedCall(); }
};
struct [[maybe_unused]] HostsTurn {
  // NOLINTNEXTLINE(modernize-use-equals-default): a variable of it would be unused.
  HostsTurn() noexcept {}
};

namespace recording {

template <class... Arguments>
void told(Arguments&&... /*arguments*/) noexcept {}
inline constexpr int looking = 0, answered = 0, requested = 0, replied = 0, urlDelegateAnswered = 0,
                     handlerBegins = 0, handlerEnded = 0;

}  // namespace recording

#else

// Each is called before the module acts on what it hears of, on the thread of the call.
struct CallListener {
  // A public operation, with its arguments as a scenario names them.
  void (*hostCalled)(const char* operation, const ValueMap& arguments);
  // A delegate's method. `more` is the second of its arguments that are worth telling.
  void (*systemCalled)(Row row, objc::id subject, objc::id more);
  // The module is about to look for delegates. Main thread.
  void (*looking)();
  // The user answered the request for permission.
  void (*answered)(bool isGranted, const std::optional<Error>& error);
  // An exchange with a server, by a number that is its own while it lasts.
  void (*requested)(const void* exchange, const URL& url);
  void (*replied)(const void* exchange, const URLReply& reply);
  void (*urlDelegateAnswered)(bool isHandled);
  // The host's function that gets the configuration of Firebase.
  void (*handlerBegins)();
  void (*handlerEnded)();
};

namespace recording {

// Never destroyed, and set once.
inline constinit std::atomic<const CallListener*> listener{nullptr};
// How deep in the module's own code the thread is: what it calls there, nobody outside called.
inline thread_local int depth = 0;

template <class Tell>
void tell(const Tell& tell) noexcept {
  if (const CallListener* const listening = listener.load(std::memory_order_acquire)) {
    contained("recording", [&] { tell(*listening); });
  }
}

// One of the listener's functions that is heard at any depth.
template <class... Parameters, class... Arguments>
void told(void (*CallListener::*function)(Parameters...), Arguments&&... arguments) noexcept {
  tell([&](const CallListener& listening) { (listening.*function)(arguments...); });
}
inline constexpr auto looking = &CallListener::looking;
inline constexpr auto answered = &CallListener::answered;
inline constexpr auto requested = &CallListener::requested;
inline constexpr auto replied = &CallListener::replied;
inline constexpr auto urlDelegateAnswered = &CallListener::urlDelegateAnswered;
inline constexpr auto handlerBegins = &CallListener::handlerBegins;
inline constexpr auto handlerEnded = &CallListener::handlerEnded;

}  // namespace recording

// A call from outside, for as long as the module handles it. Lives on the stack.
class RecordedCall {
 public:
  // The module's own: what it calls is not told.
  RecordedCall() noexcept { ++recording::depth; }
  // An operation, called by the host; `arguments` makes a ValueMap of its arguments.
  template <class MakeArguments>
  RecordedCall(const char* operation, const MakeArguments& arguments) noexcept {
    if (recording::depth++ > 0) return;
    recording::tell(
        [&](const CallListener& listening) { listening.hostCalled(operation, arguments()); });
  }
  explicit RecordedCall(const char* operation) noexcept
      : RecordedCall(operation, [] { return ValueMap(); }) {}
  // A callback that the module has taken in hand.
  RecordedCall(Row row, objc::id subject, objc::id more = nullptr) noexcept {
    if (recording::depth++ > 0) return;
    recording::tell(
        [&](const CallListener& listening) { listening.systemCalled(row, subject, more); });
  }
  ~RecordedCall() { --recording::depth; }
  RecordedCall(const RecordedCall&) = delete;
  RecordedCall& operator=(const RecordedCall&) = delete;

  // A callback that comes to the module's own object: nothing new where an interceptor before it
  // has it in hand.
  static RecordedCall unlessInHand(Row row, objc::id subject) noexcept {
    return CallbackInProgress(row, subject).isNew() ? RecordedCall(row, subject) : RecordedCall();
  }
};

// For as long as the host's own code runs in the midst of the module's: what it calls is told.
class HostsTurn {
 public:
  HostsTurn() noexcept : before_(recording::depth) { recording::depth = 0; }
  ~HostsTurn() { recording::depth = before_; }
  HostsTurn(const HostsTurn&) = delete;
  HostsTurn& operator=(const HostsTurn&) = delete;

 private:
  int before_;
};

#endif

}  // namespace zib
