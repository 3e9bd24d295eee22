// What happened, in order: the record that a run leaves behind.

#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "Simulator/Json/Json.h"

namespace sim {

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
