#include "Recorder/Redaction.h"

#include <gtest/gtest.h>

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/URL.h"

namespace {

using zib::recorder::redacted;
using zib::recorder::redactedText;

TEST(RedactionTest, LeavesNothingOfWhatATextSays) {
  EXPECT_EQ(redactedText("Dear Zoë, 20% off!"), "Aaax Xxé, 00% xaa!");
  EXPECT_EQ(redactedText("00fA19"), "00aA00");
  EXPECT_EQ(redactedText(""), "");
}

TEST(RedactionTest, LeavesWhatTheModuleDecidesBy) {
  EXPECT_EQ(redactedText("NA"), "NA");
  EXPECT_EQ(redactedText("Na"), "Xa");
  EXPECT_EQ(redactedText("PUSH-NOTIFICATION-SEND-TEST"), "PUSH-NOTIFICATION-SEND-TEST");
}

TEST(RedactionTest, ComesToRestAtOnce) {
  for (const char* const text :
       {"Dear Zoë, 20% off!", "https://shop.example/a?b=%C3%A9#z", "a:b", ":"}) {
    EXPECT_EQ(redactedText(redactedText(text)), redactedText(text)) << text;
  }
}

TEST(RedactionTest, KeepsKeysNumbersAndShape) {
  const zib::Value payload = zib::ValueMap{
      {"id", 4711}, {"list", zib::Array{"ab", true, zib::Null()}}, {"data", zib::Bytes{1, 2}}};
  const zib::Value expected = zib::ValueMap{
      {"id", 4711}, {"list", zib::Array{"aa", true, zib::Null()}}, {"data", zib::Bytes{0, 0}}};
  EXPECT_EQ(redacted(payload), expected);
}

class RedactedURLTest : public test::FoundationTest {};

TEST_F(RedactedURLTest, IsOneWhereItWasOne) {
  for (const char* const url :
       {"https://shop.example:8080/a%20b?utm_source=mail&ids=%5B1%5D#end",
        "shop-app+x://[fe80::1]/", "mailto:somebody@shop.example", "/sale"}) {
    EXPECT_TRUE(zib::URL::parse(url)) << url;
    EXPECT_TRUE(zib::URL::parse(redactedText(url))) << redactedText(url);
  }
  for (const char* const text : {"https://shop.example/summer sale", "https://shop.example/%zz"}) {
    EXPECT_FALSE(zib::URL::parse(text)) << text;
    EXPECT_FALSE(zib::URL::parse(redactedText(text))) << redactedText(text);
  }
  EXPECT_TRUE(redactedText("https://shop.example/").starts_with("https://xxxx."));
}

}  // namespace
