#include <gtest/gtest.h>

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::ValueMap;
using zib::objc::id;

class DictionaryTextKeysTest : public test::PlatformTest {};

TEST_F(DictionaryTextKeysTest, AcceptsTextKeysAndNone) {
  EXPECT_TRUE(zib::Dictionary::withTextKeys(zib::objectFrom(ValueMap{{"a", 1}})));
  EXPECT_TRUE(zib::Dictionary::withTextKeys(zib::objectFrom(ValueMap())));
}

TEST_F(DictionaryTextKeysTest, RefusesWhatIsNoDictionary) {
  EXPECT_FALSE(zib::Dictionary::withTextKeys(zib::Object()));
  EXPECT_FALSE(zib::Dictionary::withTextKeys(zib::objectFrom(zib::Value(zib::Array{"a"}))));
  EXPECT_FALSE(zib::Dictionary::withTextKeys(zib::makeString("a")));
}

TEST_F(DictionaryTextKeysTest, RefusesAKeyThatIsNoText) {
  const zib::Object dictionary = zib::objectFrom(ValueMap{{"a", 1}});
  zib::send<void>(dictionary.raw(), zib::selector<"setObject:forKey:">(),
                  zib::makeString("value").raw(), zib::objectFrom(zib::Value(5)).raw());
  EXPECT_FALSE(zib::Dictionary::withTextKeys(dictionary));
}

}  // namespace
