#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Data.h"

#include <gtest/gtest.h>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::Bytes;
using zib::objc::id;

class DataTest : public test::PlatformTest {
 protected:
  static Bytes copyOf(std::span<const std::uint8_t> bytes) { return {bytes.begin(), bytes.end()}; }
};

TEST_F(DataTest, BytesComeBackAsTheyWent) {
  const Bytes bytes{0x00, 0x01, 0xAB, 0x00};
  const zib::Object data = zib::makeData(bytes);
  EXPECT_TRUE(zib::isKind<"NSData">(data.raw()));
  EXPECT_EQ(copyOf(zib::bytesOf(data.raw())), bytes);
}

TEST_F(DataTest, NoBytesAreDataToo) {
  const zib::Object data = zib::makeData({});
  EXPECT_TRUE(zib::isKind<"NSData">(data.raw()));
  EXPECT_TRUE(zib::bytesOf(data.raw()).empty());
}

TEST_F(DataTest, AMegabyte) {
  const Bytes bytes(1U << 20U, 0x5A);
  EXPECT_EQ(copyOf(zib::bytesOf(zib::makeData(bytes).raw())), bytes);
}

TEST_F(DataTest, NilAndOtherObjectsHaveNoBytes) {
  EXPECT_TRUE(zib::bytesOf(nullptr).empty());
  EXPECT_TRUE(zib::bytesOf(zib::makeString("text").raw()).empty());
}

}  // namespace
