#include "Simulator/Foundation/Budget.h"

#include "Simulator/Foundation/FormatError.h"

namespace sim {

void Budget::spendBytes(std::size_t count) {
  if (count > maximumBytes - bytes_) throw FormatError("it holds more than 64 MB");
  bytes_ += count;
}

void Budget::spendValue() {
  if (++values_ > maximumValues) throw FormatError("it holds more than 250000 values");
}

void Budget::enter() {
  if (depth_ == maximumDepth) throw FormatError("it is nested more than 512 deep");
  ++depth_;
}

}  // namespace sim
