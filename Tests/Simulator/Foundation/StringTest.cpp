// NSString, which GNUstep makes wrongly from some characters.

#include <gtest/gtest.h>

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::selector;
using zib::send;
using zib::objc::id;
using zib::objc::UInteger;
using zib::objc::UniChar;

class StringTest : public test::FoundationTest {};

TEST_F(StringTest, AFirstCharacterIsNeverAByteOrderMark) {
  for (const char* text : {"\uFEFFa", "\uFFFEa", "\uFEFFä😀", "\uFFFEä😀", "\uFEFF", "\uFFFE",
                           "\uFEFF\uFEFF", "\uFFFF", "a\uFEFF", ""}) {
    EXPECT_EQ(zib::utf8From(zib::makeString(text).raw()), text);
  }
}

TEST_F(StringTest, NorInOtherWaysToMakeAString) {
  const UniChar units[] = {0xFFFE, 'a'};
  for (const char* name : {"NSString", "NSMutableString"}) {
    const id string =
        send<id>(zib::Class::named(name).object(), selector<"stringWithCharacters:length:">(),
                 static_cast<const UniChar*>(units), UInteger{2});
    EXPECT_EQ(zib::utf8From(string), "\uFFFEa") << name;
  }
}

}  // namespace
