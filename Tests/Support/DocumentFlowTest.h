// What the tests of configure-push flows share that answer one of the two requests with bytes of
// any kind: the flow's outcome for what is read, and for what is not.

#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "Tests/Simulator/Foundation/ReadersAndWriters.h"
#include "Tests/Support/BinaryPropertyListParts.h"
#include "Tests/Support/PushFlowTest.h"
#include "ZibMessaging/ZibPushConfig.h"

namespace test {

inline std::string inPlist(const std::string& element) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">" + element + "</plist>";
}

inline std::string binaryOf(const std::string& object) {
  return BinaryPropertyList{{object}}.bytes();
}

// A dictionary of one entry.
inline std::string smallBinaryOf(const std::string& key, const std::string& value) {
  return BinaryPropertyList{{binary::dictionary({1}, {2}), key, value}}.bytes();
}

// The document is the push configuration.
class DocumentFlowTest : public PushFlowTest {
 protected:
  Story storyOf(std::string document, int status = 200) {
    return PushFlowTest::storyOf(Request::configuration, std::move(document), status);
  }
  void expectUnreadable(const std::string& document) {
    SCOPED_TRACE(startOf(document));
    EXPECT_EQ(storyOf(document), story::notFetched(story::readersError));
    EXPECT_TRUE(flow_.lastError().starts_with("The data is not JSON: ")) << flow_.lastError();
    expectNothingHandedOver();
  }
  void expectReadable(const std::string& document) {
    SCOPED_TRACE(startOf(document));
    EXPECT_EQ(storyOf(document), story::registered());
    expectPropertyListHandedOver();
  }
};

// The document is the Firebase property list.
class PlistFlowTest : public PushFlowTest {
 protected:
  Story storyOf(std::string body, int status = 200) {
    return PushFlowTest::storyOf(Request::propertyList, std::move(body), status);
  }
  void expectUnreadable(const std::string& body) {
    SCOPED_TRACE(startOf(body));
    EXPECT_EQ(storyOf(body), story::notDownloaded(story::readersError));
    EXPECT_TRUE(flow_.lastError().starts_with("The data is not a property list: "))
        << flow_.lastError();
    expectNothingHandedOver();
  }
  // What is stored is XML, whatever came, and reads as the same.
  void expectHandedOver(const zib::ValueMap& values) {
    EXPECT_EQ(flow_.handled(), std::vector{values});
    const auto stored = flow_.stored();
    ASSERT_TRUE(stored);
    EXPECT_TRUE(stored->starts_with(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n<dict"));
    EXPECT_EQ(serialization::readPropertyList(*stored).value, zib::Value(values));
    EXPECT_EQ(ZibPushConfig::shared().savedFirebasePlistPath(), flow_.storedFile().string());
  }
};

}  // namespace test
