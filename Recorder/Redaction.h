// Texts without what they say.

#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Value.h"

namespace zib::recorder {

// Of one recording: equal texts stay equal, and different ones different. Letters and digits become
// others of their kind, so that what was a URL, a number or hexadecimal stays one, of the same
// length; which ones depends on nothing but the order in which the texts come. The scheme of a URL
// stays, and so do escapes of punctuation and the texts that the module knows. Any thread.
class Redaction {
 public:
  Redaction();

  std::string text(std::string_view text);
  // Every text and all bytes in a value; keys and numbers stay.
  Value value(const Value& value);

 private:
  std::string run(std::string_view letters);
  Bytes bytes(const Bytes& bytes);

  std::mutex mutex_;
  // Runs of letters and digits without capitals, and what they have become.
  std::map<std::string, std::string, std::less<>> runs_;
  std::set<std::string> taken_;
  // By the kinds of letters and digits in a run, how many such have been met.
  std::map<std::string, std::size_t> countByShape_;
  std::map<Bytes, Bytes> bytes_;
  std::map<std::size_t, std::size_t> countByLength_;
};

}  // namespace zib::recorder
