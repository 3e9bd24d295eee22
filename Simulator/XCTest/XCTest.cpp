#include "Simulator/XCTest/XCTest.h"

#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace sim::xctest {
namespace {

constexpr const char* testClass = "XCTest";
constexpr const char* testCaseClass = "XCTestCase";

}  // namespace

std::vector<std::string_view> classNames() { return {testClass, testCaseClass}; }

void install() {
  const zib::Class test =
      zib::ClassBuilder(testClass, zib::classNamed<"NSObject">()).registerClass();
  zib::ClassBuilder(testCaseClass, test).registerClass();
}

}  // namespace sim::xctest
