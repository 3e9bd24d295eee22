// What happened, in order: the record that a run leaves behind.

#pragma once

#include <functional>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace sim {

using Json = nlohmann::json;

// Byte strings become base64 and dates ISO 8601.
Json jsonFrom(const zib::Value& value);
Json jsonFrom(const zib::ValueMap& map);
Json jsonFrom(const zib::Error& error);
// A platform object of any kind.
Json jsonFromObject(zib::objc::id object);
// The other way round, as the platform's own JSON values: null is the null marker.
zib::Value valueFromJson(const Json& json);

// One entry as one line, its time, thread and kind first.
std::string lineFrom(const Json& entry);

// Any thread.
class Timeline {
 public:
  using Sink = std::function<void(const Json& entry)>;

  static Timeline& shared();

  // Gets each entry at once, so that nothing is lost when the process dies.
  void setSink(Sink sink);
  // Paths below this folder are shown as "$DOCUMENTS", so that runs can be compared.
  void setDocumentsPath(std::string path);
  // Stamps the fields with time, thread and kind, and adds them.
  void add(std::string_view kind, const Json& fields);

 private:
  void hideDocumentsPath(Json& value) const;

  std::mutex mutex_;
  Sink sink_;
  std::string documentsPath_;
};

}  // namespace sim
