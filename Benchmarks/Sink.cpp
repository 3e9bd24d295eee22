#include "Benchmarks/Sink.h"

#include <memory>
#include <optional>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"

namespace bench {
namespace {

struct SinkState {
  std::uint64_t sum = 0;
  bool isRecording = false;
  bool isPlanted = false;
  std::vector<std::string> record;
};

SinkState& state() {
  static SinkState state;
  return state;
}

void recordText(std::string_view kind, std::string_view text) {
  state().record.push_back(std::string(kind).append(": ").append(text));
}

void take(std::string_view kind, std::string_view text) {
  consume(text);
  if (state().isRecording) recordText(kind, text);
}

std::string describe(const zib::Value& value) {
  const std::string* text = value.get<std::string>();
  if (text != nullptr) return '"' + *text + '"';
  return value.get<zib::Null>() != nullptr ? "null" : "neither text nor null";
}

std::string describe(const std::variant<std::monostate, std::string_view, std::string>& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return '"' + *text + '"';
  if (const auto* text = std::get_if<std::string_view>(&value)) {
    return std::string("\"").append(*text) + '"';
  }
  return "null";
}

template <class Event>
void takeEvent(std::string_view schema, const Event& event) {
  consume(schema);
  consume(event);
  if (!state().isRecording) return;
  std::string text(schema);
  for (const auto& field : event) {
    text.append(" ").append(field.key).append("=").append(describe(field.value));
  }
  recordText("event", text);
}

class SinkLogger final : public ZibLogger {
 public:
  void log(std::string_view message) override {
    if (state().isPlanted) planted_ = std::make_unique<char>(message.front());
    take("log", message);
  }
  void error(std::string_view message, const std::optional<zib::Error>& error) override {
    take("error", message);
    if (error) take("error", error->description);
  }

 private:
  std::unique_ptr<char> planted_;
};

class SinkCore final : public Zib {
 public:
  [[nodiscard]] std::optional<ZibConfig> config() const override { return ZibConfig(); }
  void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap& data) override {
    takeEvent(schema, data);
  }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    return std::nullopt;
  }
  void registerPushToken(std::string_view token) override { take("registerPushToken", token); }
};

class SinkStorage final : public ZibStorage {
 public:
  void savePushPermission(bool granted) override {
    take("savePushPermission", granted ? "true" : "false");
  }
  void saveFCMToken(std::string_view token) override { take("saveFCMToken", token); }
};

}  // namespace

void installSink() {
  ZibLogger::install(std::make_unique<SinkLogger>());
  Zib::install(std::make_unique<SinkCore>());
  ZibStorage::install(std::make_unique<SinkStorage>());
}

void trackFlatEvent(std::string_view schema, const FlatEvent& event) { takeEvent(schema, event); }

void consume(std::string_view text) {
  state().sum += text.size();
  if (!text.empty()) state().sum += static_cast<unsigned char>(text.back());
}

void consume(const zib::ValueMap& event) {
  for (const zib::Member& member : event) {
    consume(member.key);
    if (const auto* text = member.value.get<std::string>()) consume(*text);
  }
}

void consume(const FlatEvent& event) {
  for (const FlatField& field : event) {
    consume(field.key);
    if (const auto* owned = std::get_if<std::string>(&field.value)) {
      consume(*owned);
    } else if (const auto* constant = std::get_if<std::string_view>(&field.value)) {
      consume(*constant);
    }
  }
}

std::uint64_t consumed() { return state().sum; }

void startRecording() { state().isRecording = true; }

std::vector<std::string> takeRecord() {
  state().isRecording = false;
  return std::exchange(state().record, {});
}

void plantAllocation() { state().isPlanted = true; }

}  // namespace bench
