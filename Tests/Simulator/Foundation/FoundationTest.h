// What every test of the simulated Foundation starts from.

#pragma once

#include <gtest/gtest.h>

#include "Platform/AutoreleasePool.h"
#include "Simulator/Foundation/Foundation.h"

class FoundationTest : public testing::Test {
 protected:
  FoundationTest() { sim::installFoundation(); }

 private:
  zib::AutoreleasePool pool_;
};
