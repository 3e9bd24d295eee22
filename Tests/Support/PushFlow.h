// Configure-push flows over loopback servers, each told as a story: every line, request and call of
// the host in its order, with the thread that it came on, and the second unless that is the first.
//
// Not for what a scenario file can say well: those are in Tests/Scenarios.

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Simulator/Device/Documents.h"
#include "Simulator/Network/Sites.h"
#include "Tests/Support/Device.h"
#include "ZibPlatform/Foundation/Value.h"

namespace test {

using Story = std::vector<std::string>;

// What the flow asks for first, and then if push is on.
enum class Request { configuration, propertyList };

inline constexpr const char* configurationHost = "config.example";
inline constexpr const char* propertyListHost = "files.example";
inline constexpr const char* configurationTarget = "/push.json";
inline constexpr const char* propertyListTarget = "/Service-Info.plist";
inline constexpr const char* configurationURL = "https://config.example/push.json";
inline constexpr const char* propertyListURL = "https://files.example/Service-Info.plist";

// Documents that lead the flow to its good end, the configuration with `toggle` and `url` as JSON.
std::string configuration(const std::string& toggle = "true",
                          const std::string& url = "\"https://files.example/Service-Info.plist\"");
std::string propertyList();
zib::ValueMap propertyListValues();

sim::Reply answer(std::string body, int status = 200);
sim::Reply broken(sim::Fault fault, std::string body = {});
sim::Reply redirect(std::string location, int status = 302);

namespace story {

inline constexpr const char* readersError = "NSCocoaErrorDomain 3840";
inline constexpr const char* savedLine =
    "session: Firebase plist saved to: $DOCUMENTS/GoogleService-Info.plist";

// The whole flow, by how it ends. An error is its domain and code.
Story notFetched(const std::string& error, int second = 0);
// The configuration is none, or is not looked at.
Story disabled();
Story switchedOff();
Story withoutURL();
Story notDownloaded(const std::string& error, int second = 0,
                    const std::string& url = propertyListURL);
// `saving` is the line about it, empty where there is none.
Story registered(const std::string& saving = savedLine, const std::string& url = propertyListURL);
// Line of the error that `registered` takes.
std::string notSaved(const std::string& error);

}  // namespace story

// The most memory that the process has ever held.
long peakMegabytes();

// One in a process, with a Documents folder of its own.
class PushFlow {
 public:
  PushFlow();
  PushFlow(const PushFlow&) = delete;
  PushFlow& operator=(const PushFlow&) = delete;

  // Answers from then on; both requests get their good documents until another one is given.
  void serve(Request request, sim::Reply answer);
  void serve(const std::string& host, const std::string& target, sim::Reply answer);
  // Takes a server off the network.
  void unlist(Request request);

  // Begins a flow on the calling thread.
  void start(const std::string& endpoint = configurationURL);
  // Begins one, without a stored file, and lets it run to its end.
  Story run();
  // The same with the file that is stored.
  Story runAgain();

  // What the host's handler got since the last run began.
  // Empty for what is deeper or larger than values() takes.
  [[nodiscard]] const std::vector<zib::ValueMap>& handled() const { return handled_; }
  // What the stored file holds; none where there is none.
  [[nodiscard]] std::optional<std::string> stored() const;
  [[nodiscard]] std::filesystem::path storedFile() const;
  [[nodiscard]] const std::filesystem::path& documents() const { return documents_.path(); }
  // Since the last run began.
  [[nodiscard]] Story story() const;
  // The description of the last error that was logged.
  [[nodiscard]] std::string lastError() const;
  [[nodiscard]] const Device& device() const { return device_; }
  // Puts the network together from what is served; a run does it too.
  void connect();

 private:
  sim::DocumentsFolder documents_;
  Device device_;
  sim::Sites sites_;
  double start_ = 0;
  std::vector<zib::ValueMap> handled_;
};

}  // namespace test
