// What every test of the simulated Foundation starts from.

#pragma once

#include <gtest/gtest.h>

#include "Simulator/Foundation/Foundation.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

class FoundationTest : public testing::Test {
 protected:
  FoundationTest() { sim::installFoundation(); }

 private:
  zib::AutoreleasePool pool_;
};
