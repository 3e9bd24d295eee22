#include <gtest/gtest.h>

#include "ZibMessaging/ZibPayloadBuilder.h"

namespace {

using zib::Value;
using zib::ValueMap;

TEST(ZibEventPayloadTest, HasThreeKeysWithoutProperties) {
  const ValueMap payload = ZibPayloadBuilder::createEventPayload("checkout");
  EXPECT_EQ(payload.size(), 3U);
  ASSERT_NE(payload.find("event_name"), nullptr);
  EXPECT_EQ(*payload.find("event_name"), Value("checkout"));
  ASSERT_NE(payload.find("platform_name"), nullptr);
  EXPECT_EQ(*payload.find("platform_name"), Value("ios"));
  ASSERT_NE(payload.find("timestamp"), nullptr);
  EXPECT_NE(payload.find("timestamp")->get<std::string>(), nullptr);
}

TEST(ZibEventPayloadTest, KeepsPropertiesWholeUnderOneKey) {
  const ValueMap properties{{"event_name", "nested"}, {"items", zib::Array{1, "two", zib::Null{}}}};
  const ValueMap payload = ZibPayloadBuilder::createEventPayload("checkout", properties);
  EXPECT_EQ(payload.size(), 4U);
  EXPECT_EQ(*payload.find("event_name"), Value("checkout"));
  ASSERT_NE(payload.find("properties"), nullptr);
  EXPECT_EQ(*payload.find("properties"), Value(properties));
}

TEST(ZibEventPayloadTest, KeepsEmptyPropertiesThatAreGiven) {
  const ValueMap payload = ZibPayloadBuilder::createEventPayload("checkout", ValueMap());
  EXPECT_EQ(payload.size(), 4U);
  ASSERT_NE(payload.find("properties"), nullptr);
  EXPECT_EQ(*payload.find("properties"), Value(ValueMap()));
}

TEST(ZibEventPayloadTest, KeepsAnEmptyName) {
  const ValueMap payload = ZibPayloadBuilder::createEventPayload("");
  EXPECT_EQ(*payload.find("event_name"), Value(""));
}

}  // namespace
