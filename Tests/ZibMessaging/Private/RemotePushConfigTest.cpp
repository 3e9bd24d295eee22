#include "Tests/Support/PlatformTest.h"
#include "ZibMessaging/Private/RemotePushConfig.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>

#include "Tests/Support/RowName.h"
#include "ZibMessaging/ZibPushError.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace {

using zib::Array;
using zib::Null;
using zib::Value;
using zib::ValueMap;

constexpr const char* plistURL = "https://config.example/service.plist";

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

zib::URLReply reply(std::string_view body, std::optional<long> status = 200) {
  return {bytesOf(body), status, std::nullopt};
}

zib::Error offline() { return {"NSURLErrorDomain", -1009, "offline", {}}; }

zib::RemotePushConfig configFrom(const ValueMap& document) {
  return zib::RemotePushConfig::from(zib::Dictionary::from(document));
}

class RemotePushConfigTest : public test::PlatformTest {};

TEST_F(RemotePushConfigTest, TakesATrueTogglesURL) {
  const auto config =
      configFrom({{"ios_config_toggle", true}, {"ios_private_key_url", plistURL}, {"other", 5}});
  EXPECT_TRUE(config.enabled);
  ASSERT_TRUE(config.firebasePlistURL);
  EXPECT_EQ(config.firebasePlistURL->text().utf8(), plistURL);
}

TEST_F(RemotePushConfigTest, NamesNoURLWhenOff) {
  const auto config = configFrom({{"ios_config_toggle", false}, {"ios_private_key_url", plistURL}});
  EXPECT_FALSE(config.enabled);
  EXPECT_FALSE(config.firebasePlistURL);
}

TEST_F(RemotePushConfigTest, IsOnWithoutAURL) {
  const auto config = configFrom({{"ios_config_toggle", true}});
  EXPECT_TRUE(config.enabled);
  EXPECT_FALSE(config.firebasePlistURL);
}

TEST_F(RemotePushConfigTest, IsOffWithoutAToggle) {
  EXPECT_FALSE(configFrom({{"ios_private_key_url", plistURL}}).enabled);
  EXPECT_FALSE(configFrom({}).enabled);
  EXPECT_FALSE(configFrom({{"IOS_CONFIG_TOGGLE", true}}).enabled);
}

struct Toggle {
  const char* name;
  Value value;
  bool enabled;
};

class RemotePushConfigToggleTest : public test::PlatformTest,
                                   public testing::WithParamInterface<Toggle> {};

TEST_P(RemotePushConfigToggleTest, ReadsAsABoolean) {
  EXPECT_EQ(configFrom({{"ios_config_toggle", GetParam().value}}).enabled, GetParam().enabled);
}

INSTANTIATE_TEST_SUITE_P(
    All, RemotePushConfigToggleTest,
    testing::Values(Toggle{"True", true, true}, Toggle{"False", false, false},
                    Toggle{"One", 1, true}, Toggle{"Zero", 0, false},
                    Toggle{"OnePointZero", 1.0, true}, Toggle{"ZeroPointZero", 0.0, false},
                    Toggle{"MinusZero", -0.0, false}, Toggle{"Two", 2, false},
                    Toggle{"MinusOne", -1, false}, Toggle{"Half", 0.5, false},
                    Toggle{"Huge", std::uint64_t{0xFFFFFFFFFFFFFFFF}, false},
                    Toggle{"TextTrue", "true", false}, Toggle{"TextOne", "1", false},
                    Toggle{"Null", Null{}, false}, Toggle{"Array", Array{true}, false},
                    Toggle{"Object", ValueMap{{"a", true}}, false}),
    test::rowName);

TEST_F(RemotePushConfigTest, TakesNoURLFromWhatFormsNone) {
  for (const Value& value :
       {Value(""), Value("no url"), Value(5), Value(Null{}), Value(Array{plistURL})}) {
    const auto config = configFrom({{"ios_config_toggle", true}, {"ios_private_key_url", value}});
    EXPECT_TRUE(config.enabled);
    EXPECT_FALSE(config.firebasePlistURL);
  }
}

TEST_F(RemotePushConfigTest, ReadsTheBodyOfStatus200) {
  const auto config = zib::readPushConfig(
      reply(R"({"ios_config_toggle": true, "ios_private_key_url": "https://config.example/p"})"));
  ASSERT_TRUE(config);
  EXPECT_TRUE(config->enabled);
  ASSERT_TRUE(config->firebasePlistURL);
  EXPECT_EQ(config->firebasePlistURL->text().utf8(), "https://config.example/p");
}

TEST_F(RemotePushConfigTest, PassesTheErrorOfTheExchangeOn) {
  const auto config =
      zib::readPushConfig({bytesOf(R"({"ios_config_toggle": true})"), 200, offline()});
  ASSERT_FALSE(config);
  EXPECT_EQ(config.error().domain, "NSURLErrorDomain");
  EXPECT_EQ(config.error().code, -1009);
}

TEST_F(RemotePushConfigTest, IsOffWithoutABodyAResponseOrStatus200) {
  constexpr std::string_view on = R"({"ios_config_toggle": true})";
  for (const auto& answer : {reply(""), reply(on, std::nullopt), reply(on, 201), reply(on, 204),
                             reply(on, 304), reply(on, 404), reply("not json", 500)}) {
    const auto config = zib::readPushConfig(answer);
    ASSERT_TRUE(config);
    EXPECT_FALSE(config->enabled);
  }
}

TEST_F(RemotePushConfigTest, IsOffWhenTheRootIsNoObject) {
  const auto config = zib::readPushConfig(reply("[]"));
  ASSERT_TRUE(config);
  EXPECT_FALSE(config->enabled);
}

// The last two make some platforms' readers fail without an error object, or throw.
TEST_F(RemotePushConfigTest, FailsOnABodyThatIsNoJSON) {
  for (const std::string_view body : {"not json", "{", "[\"\\ud800\"]", "[\"\\"}) {
    const auto config = zib::readPushConfig(reply(body));
    ASSERT_FALSE(config) << body;
    EXPECT_FALSE(config.error().domain.empty()) << body;
  }
}

constexpr std::string_view xmlPlist = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>
<key>BUNDLE_ID</key><string>com.example.host</string>
<key>IS_ADS_ENABLED</key><false/>
</dict></plist>)";

class FirebasePlistTest : public test::PlatformTest {};

TEST_F(FirebasePlistTest, IsRead) {
  const auto plist = zib::readFirebasePlist(reply(xmlPlist));
  ASSERT_TRUE(plist);
  EXPECT_EQ(plist->text("BUNDLE_ID").utf8(), "com.example.host");
  EXPECT_EQ(*plist->values(),
            (ValueMap{{"BUNDLE_ID", "com.example.host"}, {"IS_ADS_ENABLED", false}}));
}

TEST_F(FirebasePlistTest, IsReadWhateverTheStatus) {
  for (const std::optional<long> status : {std::optional(404L), std::optional(500L), {}}) {
    EXPECT_TRUE(zib::readFirebasePlist(reply(xmlPlist, status)));
  }
}

TEST_F(FirebasePlistTest, IsReadInTheOldTextForm) {
  const auto plist = zib::readFirebasePlist(reply("{ BUNDLE_ID = \"com.example.host\"; }"));
  ASSERT_TRUE(plist);
  EXPECT_EQ(plist->text("BUNDLE_ID").utf8(), "com.example.host");
}

TEST_F(FirebasePlistTest, CanBeEmpty) {
  const auto plist = zib::readFirebasePlist(
      reply(R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict/></plist>)"));
  ASSERT_TRUE(plist);
  EXPECT_TRUE(plist->empty());
}

TEST_F(FirebasePlistTest, PassesTheErrorOfTheExchangeOn) {
  const auto plist = zib::readFirebasePlist({bytesOf(xmlPlist), 200, offline()});
  ASSERT_FALSE(plist);
  EXPECT_EQ(plist.error().code, -1009);
}

TEST_F(FirebasePlistTest, FailsWithoutABody) {
  const auto plist = zib::readFirebasePlist(reply(""));
  ASSERT_FALSE(plist);
  EXPECT_EQ(zib::pushErrorFrom(plist.error()), ZibPushError::noData);
}

TEST_F(FirebasePlistTest, FailsWhenTheRootIsNoDictionary) {
  const auto plist = zib::readFirebasePlist(
      reply(R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array/></plist>)"));
  ASSERT_FALSE(plist);
  EXPECT_EQ(zib::pushErrorFrom(plist.error()), ZibPushError::invalidPlist);
}

TEST_F(FirebasePlistTest, FailsWithTheReadersErrorOnOtherBytes) {
  const auto plist = zib::readFirebasePlist(reply("{ BUNDLE_ID = "));
  ASSERT_FALSE(plist);
  EXPECT_EQ(zib::pushErrorFrom(plist.error()), std::nullopt);
}

}  // namespace
