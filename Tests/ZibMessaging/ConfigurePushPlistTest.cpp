// How a configure-push flow ends by what it downloads as the Firebase property list, and what
// becomes of the stored file. Which bytes are a property list is in
// ConfigurePushPlistGrammarTest.cpp.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "Simulator/Device/Documents.h"
#include "Simulator/Foundation/Foundation.h"
#include "Tests/Support/BinaryPropertyListParts.h"
#include "Tests/Support/DocumentFlowTest.h"
#include "Tests/Support/Repeated.h"
#include "Tests/Support/RowName.h"
#include "ZibMessaging/ZibPushConfig.h"

namespace {

using namespace std::string_literals;
using test::answer;
using test::bigEndian;
using test::binaryOf;
using test::BinaryPropertyList;
using test::Bodies;
using test::inPlist;
using test::repeated;
using test::Request;
using test::smallBinaryOf;
using test::Story;
using zib::Array;
using zib::Date;
using zib::Value;
using zib::ValueMap;

namespace binary = test::binary;
namespace fs = std::filesystem;
using binary::Kind;

constexpr const char* invalidPlist = "ZibMessaging.ZibPushError 2";
constexpr const char* noData = "ZibMessaging.ZibPushError 1";
constexpr const char* writersError = "NSCocoaErrorDomain 3851";

class ConfigurePushPlistTest : public test::PlistFlowTest {};

// A property list, but not one of a dictionary.
class PlistRootTest : public ConfigurePushPlistTest, public testing::WithParamInterface<Bodies> {};

TEST_P(PlistRootTest, IsADictionaryOrEndsTheFlow) {
  for (const std::string& body : GetParam().bodies) {
    SCOPED_TRACE(testing::PrintToString(body));
    EXPECT_EQ(storyOf(body), test::story::notDownloaded(invalidPlist));
    expectNothingHandedOver();
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, PlistRootTest,
    testing::Values(
        Bodies{"Array",
               {inPlist("<array/>"), inPlist("<array><dict/></array>"), binaryOf(binary::array({})),
                "(a, b)"}},
        Bodies{"Text",
               {inPlist("<string>a</string>"), inPlist("<string/>"), binaryOf(binary::text("z")),
                "Forbidden", "\"a b\"", "404", "b", "bplis"}},
        Bodies{"Number",
               {inPlist("<integer>1</integer>"), inPlist("<real>1.5</real>"),
                binaryOf(binary::integer(1)), binaryOf(binary::real(1.0F))}},
        Bodies{"Boolean", {inPlist("<true/>"), inPlist("<false/>"), binaryOf(binary::yes())}},
        Bodies{"Date", {inPlist("<date>2026-11-16T00:10:00Z</date>"), binaryOf(binary::date(0))}},
        Bodies{"Data", {inPlist("<data>AQID</data>"), binaryOf(binary::data("z")), "<0fbd77>"}}),
    test::rowName);

TEST_F(ConfigurePushPlistTest, NoBytesAreNoData) {
  for (const int status : {200, 204, 304, 404, 500}) {
    SCOPED_TRACE(status);
    EXPECT_EQ(storyOf("", status), test::story::notDownloaded(noData));
    expectNothingHandedOver();
  }
}

TEST_F(ConfigurePushPlistTest, AnEmptyDictionaryIsStored) {
  for (const std::string& body : {inPlist("<dict/>"), inPlist("<dict></dict>"),
                                  binaryOf(binary::dictionary({}, {})), "{}"s}) {
    EXPECT_EQ(storyOf(body), test::story::registered());
    expectHandedOver({});
    EXPECT_TRUE(flow_.stored()->ends_with("<plist version=\"1.0\">\n<dict/>\n</plist>\n"));
  }
}

TEST_F(ConfigurePushPlistTest, TheStatusIsNotLookedAt) {
  for (const int status : {200, 201, 206, 301, 302, 400, 401, 404, 410, 500, 503}) {
    SCOPED_TRACE(status);
    EXPECT_EQ(storyOf(test::propertyList(), status), test::story::registered());
    expectHandedOver(test::propertyListValues());
    EXPECT_EQ(storyOf("<html><body>Oops<br></body></html>", status),
              test::story::notDownloaded(test::story::readersError));
    expectNothingHandedOver();
  }
}

TEST_F(ConfigurePushPlistTest, ASecondDownloadReplacesALongerFile) {
  storyOf(inPlist("<dict><key>a</key><string>" + std::string(100'000, 'x') + "</string></dict>"));
  flow_.serve(Request::propertyList, answer(test::propertyList()));
  EXPECT_EQ(flow_.runAgain(), test::story::registered());
  expectHandedOver(test::propertyListValues());
  EXPECT_EQ(flow_.stored(), test::propertyList());
}

TEST_F(ConfigurePushPlistTest, AFailedDownloadLeavesTheEarlierFile) {
  storyOf(test::propertyList());
  flow_.serve(Request::propertyList, answer("<html>"));
  EXPECT_EQ(flow_.runAgain(), test::story::notDownloaded(test::story::readersError));
  EXPECT_TRUE(flow_.handled().empty());
  EXPECT_EQ(flow_.stored(), test::propertyList());
}

// The binary form holds what XML cannot: that is handed over, but not stored.
TEST_F(ConfigurePushPlistTest, WhatXMLCannotHoldIsHandedOverOnly) {
  struct Case {
    std::string object;
    Value value;
  };
  for (const Case& each : {Case{binary::text("x\0y"s), "x\0y"s}, Case{binary::text("\x1B"), "\x1B"},
                           Case{binary::wideText(u"\uFFFE"), "\uFFFE"},
                           Case{binary::date(1e15), Date{1e15 + 978307200}}}) {
    SCOPED_TRACE(testing::PrintToString(each.object));
    EXPECT_EQ(storyOf(smallBinaryOf(binary::text("z"), each.object)),
              test::story::registered(test::story::notSaved(writersError)));
    EXPECT_EQ(flow_.handled(), std::vector{ValueMap({{"z", each.value}})});
    EXPECT_FALSE(fs::exists(flow_.storedFile()));
  }
}

// A few hundred kilobytes that would be indented to many megabytes.
TEST_F(ConfigurePushPlistTest, WhatXMLIndentsTooFarIsHandedOverOnly) {
  constexpr unsigned size = 2;
  constexpr std::size_t levels = 500;
  constexpr std::size_t count = 150'000;
  BinaryPropertyList list{{binary::text("z")}, 1, size};
  for (std::size_t level = 1; level < levels; ++level) {
    list.objects.push_back(binary::dictionary({0}, {level + 1}, size));
  }
  list.objects.push_back(
      binary::longObject(Kind::array, count, 2, repeated(bigEndian(levels + 1, size), count)));
  list.objects.push_back(binary::yes());
  EXPECT_EQ(storyOf(list.bytes()), test::story::registered(test::story::notSaved(writersError)));
  EXPECT_EQ(flow_.handled().size(), 1U);
  EXPECT_FALSE(fs::exists(flow_.storedFile()));
  EXPECT_LT(test::peakMegabytes(), 1000);
}

// A Documents folder, or a file in it, that takes nothing, and the platform's error for it.
struct Obstacle {
  const char* name;
  int error;
  void (*putUp)(const fs::path& documents, const fs::path& file);
  // Whether something is at the file's path all the same, so that it counts as stored.
  bool isSomethingThere;
};

class ObstructedDocumentsTest : public ConfigurePushPlistTest,
                                public testing::WithParamInterface<Obstacle> {};

TEST_P(ObstructedDocumentsTest, CostNothingButTheStoredFile) {
  fs::permissions(flow_.documents(), fs::perms::all);
  GetParam().putUp(flow_.documents(), flow_.storedFile());
  Story story;
  // Where file modes count even for root.
  std::thread([&] {
    sim::giveUpFilePrivileges();
    story = flow_.runAgain();
  }).join();
  // It stands in for the main thread, whose privileges are the whole process's.
  for (std::string& line : story) {
    if (line.starts_with("unknown: ")) line.replace(0, std::string("unknown").size(), "main");
  }
  EXPECT_EQ(story, test::story::registered(test::story::notSaved(
                       "NSCocoaErrorDomain " + std::to_string(GetParam().error))));
  EXPECT_EQ(flow_.handled(), std::vector{test::propertyListValues()});
  EXPECT_EQ(ZibPushConfig::shared().savedFirebasePlistPath().has_value(),
            GetParam().isSomethingThere);
}

void setLongPath(const fs::path& documents, std::size_t length) {
  sim::foundation::setDocumentsDirectory(documents.string() + repeated("/deeper", length / 7));
}

INSTANTIATE_TEST_SUITE_P(
    All, ObstructedDocumentsTest,
    testing::Values(
        Obstacle{"ReadOnly", 513,
                 [](const fs::path& documents, const fs::path&) {
                   fs::permissions(documents, fs::perms(0555));
                 },
                 false},
        Obstacle{"NotToBeEntered", 513,
                 [](const fs::path& documents, const fs::path&) {
                   fs::permissions(documents, fs::perms(0));
                 },
                 false},
        Obstacle{"Removed", 4,
                 [](const fs::path& documents, const fs::path&) { fs::remove(documents); }, false},
        Obstacle{"AFileInsteadOfAFolder", 4,
                 [](const fs::path& documents, const fs::path&) {
                   fs::remove(documents);
                   std::ofstream(documents) << "a file";
                 },
                 false},
        Obstacle{"OfTooLongAPath", 514,
                 [](const fs::path& documents, const fs::path&) { setLongPath(documents, 5000); },
                 false},
        Obstacle{"OfTooLongAName", 514,
                 [](const fs::path& documents, const fs::path&) {
                   sim::foundation::setDocumentsDirectory(documents.string() + "/" +
                                                          std::string(300, 'n'));
                 },
                 false},
        Obstacle{"AFolderInTheFilesPlace", 512,
                 [](const fs::path&, const fs::path& file) {
                   fs::create_directories(file / "not empty");
                 },
                 true},
        Obstacle{"AReadOnlyFile", 513,
                 [](const fs::path&, const fs::path& file) {
                   std::ofstream(file) << "old";
                   fs::permissions(file, fs::perms(0444));
                 },
                 true},
        Obstacle{
            "AFullDisk", 640,
            [](const fs::path&, const fs::path& file) { fs::create_symlink("/dev/full", file); },
            true},
        Obstacle{
            "ALinkToNowhere", 4,
            [](const fs::path&, const fs::path& file) { fs::create_symlink("missing/file", file); },
            false},
        Obstacle{"ALinkToItself", 512,
                 [](const fs::path&, const fs::path& file) { fs::create_symlink(file, file); },
                 false}),
    test::rowName);

TEST_F(ConfigurePushPlistTest, WithoutADocumentsFolderNothingIsStoredNorSaid) {
  sim::foundation::setDocumentsDirectory(std::nullopt);
  EXPECT_EQ(flow_.run(), test::story::registered(""));
  EXPECT_EQ(flow_.handled(), std::vector{test::propertyListValues()});
  EXPECT_EQ(ZibPushConfig::shared().savedFirebasePlistPath(), std::nullopt);
}

}  // namespace
