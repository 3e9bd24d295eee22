// What the module makes of one push payload, for people who send it: the event that it reports, the
// link that it opens, and what is likely a mistake. No device runs; the decisions are the module's
// own.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Timeline/Timeline.h"

namespace sim {

// What the system's push service takes, in bytes.
inline constexpr std::size_t largestPayload = 4096;

struct InspectedField {
  std::string key;
  Json value;
  // Where the value comes from, or why there is none.
  std::string note;
};

struct ConsideredKey {
  std::string key;
  // "absent", "notText", "empty", "notApplicable", "opens", "noURL", "notReached".
  std::string verdict;
  std::string note;
};

// What a tap opens. The optional ones are absent where no key holds a link, or it is no URL.
struct InspectedLink {
  std::optional<std::string> key;
  std::optional<std::string> candidate;
  std::optional<std::string> url;
  // Whether there is a URL that the system can open, too: the module asks it to open any.
  bool isOpenedBySystem = false;
  std::string reason;
  std::vector<ConsideredKey> considered;
};

struct Remark {
  // The top-level key, or the way down to a nested one with dots; empty for the payload as a whole.
  std::string key;
  std::string message;
};

// What the system shows, as far as the payload says.
struct Alert {
  std::string title;
  std::string subtitle;
  std::string body;
};

struct Inspection {
  std::string eventType;
  bool isTest = false;
  std::vector<InspectedField> event;
  InspectedLink link;
  std::vector<Remark> remarks;
  // Of the payload as compact JSON, without what only simulators read.
  std::size_t size = 0;
  std::optional<Alert> alert;
};

// Throws ScenarioError for what is no payload. Needs foundation::install(), and a pool on this
// thread.
Inspection inspect(std::string_view text, std::string_view eventType);

Json jsonFrom(const Inspection& inspection);

}  // namespace sim
