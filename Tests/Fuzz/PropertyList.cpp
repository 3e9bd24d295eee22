// Property lists of any kind, in whichever form they take the bytes for: what is read can be
// written, and read again. Built three times, for corpora of XML, binary lists and the old text
// form.

#include "Tests/Fuzz/Target.h"
#include "Tests/Simulator/Foundation/ReadersAndWriters.h"

namespace {

using serialization::Read;
using serialization::Written;

constexpr std::int64_t readersError = 3840;
constexpr std::int64_t writersError = 3851;

}  // namespace

void fuzz::prepare() {}

void fuzz::run(std::string_view input) {
  const Read read = serialization::readPropertyList(input);
  require(read.value || read.error.code == readersError, "what is refused is an error");
  if (!read.value) return;
  const Written binary = serialization::writePropertyList(*read.value, serialization::binaryFormat);
  require(binary.bytes.has_value(), "what is read can be written as a binary list");
  const Read again = serialization::readPropertyList(*binary.bytes);
  require(again.value.has_value(), "what is written can be read");
  // Compared as bytes, since what is no number equals nothing.
  require(serialization::writePropertyList(*again.value, serialization::binaryFormat).bytes ==
              binary.bytes,
          "what is written and read is the same");
  const Written xml = serialization::writePropertyList(*read.value, serialization::xmlFormat);
  require(xml.bytes || xml.error.code == writersError, "what XML cannot hold is an error");
  require(!xml.bytes || serialization::readPropertyList(*xml.bytes).value.has_value(),
          "XML that is written can be read");
}
