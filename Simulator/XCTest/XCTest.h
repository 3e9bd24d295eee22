// A stand-in for XCTest, by whose classes a process is known to be a test's.

#pragma once

#include <string_view>
#include <vector>

namespace sim::xctest {

// Of the classes that install() registers.
std::vector<std::string_view> classNames();

// Registers the classes. Once in a process.
void install();

}  // namespace sim::xctest
