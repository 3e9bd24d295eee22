// What every test of the platform's objects starts from.
//
// Not for tests that need a device: those hold a test::Device.

#pragma once

#include <gtest/gtest.h>

#include "Simulator/Foundation/Foundation.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace test {

// A pool around each test. The Foundation is as the system comes with it.
class PlatformTest : public testing::Test {
 private:
  zib::AutoreleasePool pool_;
};

// The same with the simulated device's Foundation.
class FoundationTest : public PlatformTest {
 protected:
  FoundationTest() { sim::foundation::install(); }
};

}  // namespace test
