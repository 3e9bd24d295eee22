// A recording as it grows: the parts of a scenario, and the file that holds it.

#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "Recorder/HostView.h"
#include "Recorder/Redaction.h"
#include "ZibMessaging/Private/Recording.h"

#ifdef ZIB_RECORDS_CALLS

namespace zib::recorder {

enum class Texts { redacted, asTheyAre };

// Any thread, unless it says main.
class RecordedScenario {
 public:
  RecordedScenario(std::string path, Texts texts);

  // Looks at the host for the first time, and writes the file. Main thread. False where it cannot
  // be written.
  bool begin();

  // What has changed of the host since the last time comes as steps of its own. Main thread;
  // elsewhere it does nothing.
  void look();

  void hostCalled(const char* operation, const ValueMap& arguments);
  void systemCalled(Row row, objc::id subject, objc::id more);
  void answered(bool isGranted, const std::optional<Error>& error);
  void requested(const void* exchange, const URL& url);
  void replied(const void* exchange, const URLReply& reply);
  void urlDelegateAnswered(bool isHandled);
  void handlerBegins();
  void handlerEnded();

 private:
  void describeDevice();
  void describeCore();
  void describeHost(const HostView& view);
  void noteChanges(const HostView& view);
  void noteScenes(const HostView& view);
  void noteDelegates();
  [[nodiscard]] Value describeScene(const SceneView& scene);
  [[nodiscard]] ValueMap describeFirebase(const FirebaseView& firebase);
  [[nodiscard]] ValueMap errorFields(const Error& error);
  [[nodiscard]] ValueMap answerFrom(const URLReply& reply);
  [[nodiscard]] std::string shownText(std::string_view text);
  [[nodiscard]] Value shown(const Value& value);

  // A step that happens now.
  void add(ValueMap step, const char* otherThread = "background");
  // A step that happened at some time since the last one.
  void addBefore(ValueMap step);
  void passTime();
  void write();

  std::mutex mutex_;
  std::string path_;
  Texts texts_;
  Redaction redaction_;
  double start_ = 0;
  // How far the steps so far have brought the clock of whoever plays them.
  double played_ = 0;
  HostClasses classes_;
  HostView seen_;
  bool hadMessagingDelegate_ = false;
  Value urlDelegate_;
  FirebaseView firebaseBeforeHandler_;
  // Whether the host has said, since the recording began, how delegates are found.
  std::atomic<bool> hasToldDiscovery_{false};
  // The addresses that exchanges went to.
  std::map<const void*, std::string> requests_;
  // Where the step stands that began the latest remote configuration.
  std::size_t configurePush_ = 0;
  ValueMap device_;
  ValueMap core_;
  ValueMap host_;
  ValueMap network_;
  Array steps_;
};

}  // namespace zib::recorder

#endif
