// JSON of any kind, as the platform's reader takes it.

#include "Tests/Fuzz/Target.h"
#include "Tests/Simulator/Foundation/ReadersAndWriters.h"

void fuzz::prepare() {}

void fuzz::run(std::string_view input) {
  constexpr zib::objc::UInteger anyRoot = 4;
  const serialization::Read strict = serialization::readJSON(input);
  const serialization::Read lenient = serialization::readJSON(input, anyRoot);
  require(!strict.value || lenient.value == strict.value, "a document with a root is a document");
  constexpr std::int64_t readersError = 3840;
  require(lenient.value || lenient.error.code == readersError, "what is refused is an error");
  if (!lenient.value) return;
  require(sim::valueOf(zib::objectFrom(*lenient.value).raw()) == *lenient.value,
          "what is read goes to the platform and back");
}
