// What a collection gives when it is gone through.

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Elements.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::elements;
using zib::keysOf;
using zib::Object;
using zib::objc::id;
using Texts = std::vector<std::string>;

class ElementsTest : public test::PlatformTest {
 protected:
  static Texts textsOf(zib::Elements elements) {
    Texts texts;
    for (const id each : elements) texts.push_back(zib::utf8From(each));
    return texts;
  }
};

TEST_F(ElementsTest, AnArrayGivesItsElementsInOrder) {
  const Object array = zib::objectFrom(zib::Value(zib::Array{"a", "b", "a"}));
  EXPECT_EQ(textsOf(elements(array.raw())), (Texts{"a", "b", "a"}));
}

TEST_F(ElementsTest, ASetGivesEachElementOnce) {
  const Object set = zib::create<"NSMutableSet">();
  for (const char* text : {"a", "b", "a"}) {
    zib::send<void>(set.raw(), zib::selector<"addObject:">(), zib::makeString(text).raw());
  }
  const Texts texts = textsOf(elements(set.raw()));
  EXPECT_EQ(texts.size(), 2U);
  EXPECT_EQ(std::set<std::string>(texts.begin(), texts.end()), (std::set<std::string>{"a", "b"}));
}

TEST_F(ElementsTest, ADictionaryGivesItsValuesOrItsKeys) {
  const Object dictionary = zib::objectFrom(zib::ValueMap{{"key", "value"}});
  EXPECT_EQ(textsOf(elements(dictionary.raw())), Texts{"value"});
  EXPECT_EQ(textsOf(keysOf(dictionary.raw())), Texts{"key"});
}

TEST_F(ElementsTest, NilAndWhatIsEmptyGiveNothing) {
  EXPECT_EQ(textsOf(elements(nullptr)), Texts());
  EXPECT_EQ(textsOf(keysOf(nullptr)), Texts());
  for (const Object& empty :
       {zib::create<"NSArray">(), zib::create<"NSSet">(), zib::create<"NSDictionary">()}) {
    EXPECT_EQ(textsOf(elements(empty.raw())), Texts());
  }
}

}  // namespace
