// What each fuzz target is: a function of any bytes. It passes when it comes back.

#pragma once

#include <string_view>

namespace fuzz {

// Once, before all input. The simulated Foundation is there by then.
void prepare();
// A pool is around it.
void run(std::string_view input);

// Says what does not hold and ends the process, which the fuzzer takes for a finding.
void require(bool holds, const char* what);

}  // namespace fuzz
