#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/PropertyList.h"

#include <gtest/gtest.h>

#include <string>

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace {

using zib::Value;
using zib::ValueMap;

class PlatformPropertyListTest : public test::PlatformTest {};

TEST_F(PlatformPropertyListTest, WritesXMLThatReadsBack) {
  const ValueMap values{{"text", "a < b & c"},
                        {"yes", true},
                        {"count", 42},
                        {"ratio", 0.5},
                        {"data", zib::Bytes{0, 1, 255}},
                        {"date", zib::Date{1'000'000'000}},
                        {"list", zib::Array{"one", ValueMap{{"deep", false}}}}};
  const auto data = zib::xmlPropertyList(zib::Dictionary::from(values));
  ASSERT_TRUE(data);
  const auto bytes = zib::bytesOf(data->raw());
  const std::string text(bytes.begin(), bytes.end());
  EXPECT_TRUE(text.starts_with("<?xml"));
  EXPECT_NE(text.find("plist version=\"1.0\""), std::string::npos);
  const auto root = zib::parsePropertyList(bytes);
  ASSERT_TRUE(root);
  EXPECT_EQ(*zib::valueFrom(root->raw()), Value(values));
}

TEST_F(PlatformPropertyListTest, WritesAnEmptyDictionary) {
  const auto data = zib::xmlPropertyList(zib::Dictionary());
  ASSERT_TRUE(data);
  const auto root = zib::parsePropertyList(zib::bytesOf(data->raw()));
  ASSERT_TRUE(root);
  EXPECT_EQ(*zib::valueFrom(root->raw()), Value(ValueMap()));
}

TEST_F(PlatformPropertyListTest, FailsWithAnErrorOnOtherBytes) {
  const auto root =
      zib::parsePropertyList(zib::Bytes{'b', 'p', 'l', 'i', 's', 't', '0', '0', 0xFF});
  ASSERT_FALSE(root);
  EXPECT_FALSE(root.error().domain.empty());
}

}  // namespace
