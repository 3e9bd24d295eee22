#include "Tests/Support/PushFlow.h"

#include <sys/resource.h>

#include <cmath>
#include <fstream>
#include <iterator>

namespace test {
namespace {

using sim::Json;

std::string namedError(const std::string& line, const std::string& error) {
  return "error: " + line + " (" + error + ")";
}

std::string described(const Json& entry) {
  const std::string& kind = entry.at("kind").get_ref<const std::string&>();
  if (kind == "http") {
    return entry.at("method").get<std::string>() + " " + entry.at("url").get<std::string>() + " " +
           entry.at("headers").dump() + " " + entry.at("timeout").dump();
  }
  if (kind == "system") return entry.at("operation");
  if (kind == "completion") return "completion(" + entry.at("value").dump() + ")";
  if (kind == "firebaseConfig") return "firebaseConfigHandler";
  if (kind != "log") return entry.dump();
  std::string message = entry.at("message");
  if (entry.at("level") == "info") return message;
  const Json error = entry.value("error", Json{{"domain", "no error"}, {"code", ""}});
  return namedError(message, error.at("domain").get<std::string>() + " " + error.at("code").dump());
}

Story joined(Story first, const Story& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

std::string sessionAt(int second) {
  return second == 0 ? "session: " : "session at " + std::to_string(second) + ": ";
}

Story failed(const std::string& line, const std::string& error, int second) {
  const std::string session = sessionAt(second);
  return {session + namedError(line, error), session + "completion(false)"};
}

Story fetching() {
  const std::string url = configurationURL;
  return {"main: Fetching push configuration from: " + url,
          "main: GET " + url + R"( {"Content-Type":"application/json"} 30.0)"};
}

Story downloading(const std::string& url) {
  return joined(fetching(), {"session: Push config: enabled=true",
                             "session: Downloading Firebase plist from: " + url,
                             "session: GET " + url + " {} 60.0"});
}

const Story& disabling() {
  static const Story lines{"session: Push notifications disabled by remote config",
                           "session: completion(false)"};
  return lines;
}

}  // namespace

std::string configuration(const std::string& toggle, const std::string& url) {
  return "{\"ios_config_toggle\": " + toggle + ", \"ios_private_key_url\": " + url + "}";
}

std::string propertyList() {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>API_KEY</key>
	<string>k-1</string>
	<key>IS_ADS_ENABLED</key>
	<false/>
</dict>
</plist>
)";
}

zib::ValueMap propertyListValues() { return {{"API_KEY", "k-1"}, {"IS_ADS_ENABLED", false}}; }

sim::Reply answer(std::string body, int status) {
  return {status, {}, std::move(body), sim::Fault::none};
}

sim::Reply broken(sim::Fault fault, std::string body) { return {200, {}, std::move(body), fault}; }

sim::Reply redirect(std::string location, int status) {
  return {status, {{"Location", std::move(location)}}, "moved", sim::Fault::none};
}

namespace story {

Story notFetched(const std::string& error, int second) {
  return joined(fetching(), failed("Failed to fetch push config", error, second));
}

Story disabled() { return joined(fetching(), disabling()); }

Story switchedOff() {
  return joined(joined(fetching(), {"session: Push config: enabled=false"}), disabling());
}

Story withoutURL() {
  return joined(joined(fetching(), {"session: Push config: enabled=true"}), disabling());
}

Story notDownloaded(const std::string& error, int second, const std::string& url) {
  return joined(downloading(url), failed("Failed to download Firebase plist", error, second));
}

Story registered(const std::string& saving, const std::string& url) {
  Story story = downloading(url);
  if (!saving.empty()) story.push_back(saving);
  return joined(story,
                {"session: Firebase plist downloaded and parsed successfully",
                 "session: firebaseConfigHandler", "main: Registering for push notifications",
                 "main: requestAuthorization", "main: completion(true)"});
}

std::string notSaved(const std::string& error) {
  return "session: " + namedError("Failed to save Firebase plist", error);
}

}  // namespace story

long peakMegabytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  constexpr long kilobytes = 1024;
  return usage.ru_maxrss / kilobytes;
}

PushFlow::PushFlow()
    : documents_(sim::Documents::writable),
      device_(sim::uikit::ApplicationPresence::present, documents_.path()) {
  serve(Request::configuration, answer(configuration()));
  serve(Request::propertyList, answer(propertyList()));
}

void PushFlow::serve(Request request, sim::Reply answer) {
  if (request == Request::configuration) {
    serve(configurationHost, configurationTarget, std::move(answer));
  } else {
    serve(propertyListHost, propertyListTarget, std::move(answer));
  }
}

void PushFlow::serve(const std::string& host, const std::string& target, sim::Reply answer) {
  sites_[host][target] = std::move(answer);
}

void PushFlow::unlist(Request request) {
  sites_.erase(request == Request::configuration ? configurationHost : propertyListHost);
}

void PushFlow::connect() { device_.connectTo(sites_); }

std::filesystem::path PushFlow::storedFile() const {
  return documents_.path() / "GoogleService-Info.plist";
}

std::optional<std::string> PushFlow::stored() const {
  std::ifstream stream(storedFile(), std::ios::binary);
  if (!stream || !std::filesystem::is_regular_file(storedFile())) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::string PushFlow::lastError() const {
  std::string description;
  for (const Json& entry : device_.entries("log")) {
    if (entry.contains("error")) description = entry.at("error").at("description");
  }
  return description;
}

Story PushFlow::story() const {
  Story story;
  for (const Json& entry : device_.entries()) {
    const long second = std::lround(entry.at("t").get<double>() - start_);
    const std::string thread = entry.at("thread");
    story.push_back(thread + (second == 0 ? "" : " at " + std::to_string(second)) + ": " +
                    described(entry));
  }
  return story;
}

}  // namespace test
