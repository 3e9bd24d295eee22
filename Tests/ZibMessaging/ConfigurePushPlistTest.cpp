// What a server may send as the Firebase property list, from its socket to the host's handler and
// the stored file.

#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "Simulator/Device/Documents.h"
#include "Simulator/Foundation/Foundation.h"
#include "Tests/Simulator/Foundation/Serialization.h"
#include "Tests/Support/BinaryPropertyList.h"
#include "Tests/Support/PushFlowTest.h"
#include "Tests/Support/Repeated.h"
#include "Tests/Support/RowName.h"
#include "ZibMessaging/ZibPushConfig.h"

namespace {

using namespace std::string_literals;
using test::answer;
using test::bigEndian;
using test::BinaryPropertyList;
using test::Bodies;
using test::hundredThousand;
using test::repeated;
using test::Request;
using test::Story;
using test::tenMegabytes;
using test::truncationsOf;
using zib::Array;
using zib::Bytes;
using zib::Date;
using zib::Value;
using zib::ValueMap;

namespace fs = std::filesystem;

constexpr const char* invalidPlist = "ZibMessaging.ZibPushError 2";
constexpr const char* noData = "ZibMessaging.ZibPushError 1";
constexpr const char* writersError = "NSCocoaErrorDomain 3851";

std::string inPlist(const std::string& element) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">" + element + "</plist>";
}

std::string binaryOf(const std::string& object) { return BinaryPropertyList{{object}}.bytes(); }

class ConfigurePushPlistTest : public test::PushFlowTest {
 protected:
  Story storyOf(std::string body, int status = 200) {
    return PushFlowTest::storyOf(Request::propertyList, std::move(body), status);
  }
  void expectUnreadable(const std::string& body) {
    SCOPED_TRACE(test::startOf(body));
    EXPECT_EQ(storyOf(body), test::story::notDownloaded(test::story::readersError));
    EXPECT_TRUE(flow_.lastError().starts_with("The data is not a property list: "))
        << flow_.lastError();
    expectNothingHandedOver();
  }
  // What is stored is XML, whatever came, and reads as the same.
  void expectHandedOver(const ValueMap& values) {
    EXPECT_EQ(flow_.handled(), std::vector{values});
    const auto stored = flow_.stored();
    ASSERT_TRUE(stored);
    EXPECT_TRUE(stored->starts_with(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n<dict"));
    EXPECT_EQ(serialization::readPropertyList(*stored).value, Value(values));
    EXPECT_EQ(ZibPushConfig::shared().savedFirebasePlistPath(), flow_.storedFile().string());
  }
};

class UnreadablePlistTest : public ConfigurePushPlistTest,
                            public testing::WithParamInterface<Bodies> {};

TEST_P(UnreadablePlistTest, EndsTheFlowWithTheReadersError) {
  for (const std::string& body : GetParam().bodies) expectUnreadable(body);
}

// With some of the trailer's bytes replaced, counted from the end.
std::string withTrailer(std::size_t fromEnd, const std::string& bytes) {
  std::string list = binaryOf("\xD0");
  return list.replace(list.size() - fromEnd, bytes.size(), bytes);
}

const std::string smallXML = inPlist("<dict><key>a</key><string>b</string></dict>");
const std::string smallBinary = BinaryPropertyList{{"\xD1\x01\x02", "\x51x", "\x51y"}}.bytes();

INSTANTIATE_TEST_SUITE_P(
    XML, UnreadablePlistTest,
    testing::Values(Bodies{"ErrorPages",
                           {"<!DOCTYPE html>\n<html><head><title>502</title></head><body>Bad "
                            "gateway</body></html>",
                            "<html><body><h1>Not Found</h1><br></body></html>",
                            "<?xml version=\"1.0\"?><Error><Code>AccessDenied</Code></Error>"}},
                    Bodies{"Truncations", truncationsOf(smallXML, 1)},
                    Bodies{"ExternalEntities",
                           {"<!DOCTYPE plist [<!ENTITY a SYSTEM \"file:///etc/passwd\">]>"
                            "<plist><dict><key>a</key><string>&a;</string></dict></plist>",
                            "<!DOCTYPE plist [<!ENTITY a SYSTEM \"https://files.example/secret\">]>"
                            "<plist><dict><key>a</key><string>&a;</string></dict></plist>",
                            "<!DOCTYPE plist [<!ENTITY % a SYSTEM \"file:///etc/passwd\"> %a;]>"
                            "<plist><dict><key>a</key><string>b</string></dict></plist>",
                            "<!DOCTYPE plist SYSTEM \"file:///etc/passwd\">"
                            "<plist><dict><key>a</key><string>&a;</string></dict></plist>"}},
                    Bodies{
                        "BadValues",
                        {inPlist("<dict><key>a</key><integer>x</integer></dict>"),
                         inPlist("<dict><key>a</key></dict>"), inPlist("<dict><true/></dict>"),
                         inPlist("<dict><key>a</key><date>today</date></dict>"),
                         inPlist("<dict><key>a</key><data>?</data></dict>"),
                         inPlist("<dict><integer>1</integer><true/></dict>"),
                         inPlist("<dict><key>a</key><string>\xFF</string></dict>"), inPlist("")}}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    Binary, UnreadablePlistTest,
    testing::Values(
        Bodies{"Truncations", truncationsOf(smallBinary, 6)},
        Bodies{"Circles",
               {binaryOf("\xA1\0"s), BinaryPropertyList{{"\xA2\x01\x01", "\xA2\0\0"s}}.bytes(),
                BinaryPropertyList{{"\xD1\x01\0"s, "\x51z"}}.bytes()}},
        Bodies{"HugeLengths",
               {binaryOf("\x4F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"),
                binaryOf("\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"),
                binaryOf("\x6F\x13\x80\0\0\0\0\0\0\0"s), binaryOf("\xAF\x12\x7F\xFF\xFF\xFF"),
                binaryOf("\xDF\x13\x80\0\0\0\0\0\0\0"s), binaryOf("\xDF\x12\xFF\xFF\xFF\xFF")}},
        Bodies{"HugeCounts",
               {withTrailer(24, std::string(8, '\xFF')), withTrailer(24, bigEndian(1U << 31U, 8)),
                withTrailer(24, bigEndian(0, 8))}},
        Bodies{"HugeReferences",
               {withTrailer(16, std::string(8, '\xFF')), binaryOf("\xA1\x7F"),
                binaryOf("\xD1\x7F\x7F"), withTrailer(16, bigEndian(1, 8))}},
        Bodies{"HugeOffsets",
               {withTrailer(8, std::string(8, '\xFF')), withTrailer(8, bigEndian(1U << 31U, 8)),
                withTrailer(36, std::string(4, '\xFF')), withTrailer(36, std::string(4, '\0'))}},
        Bodies{"BadSizes",
               {withTrailer(26, "\0"s), withTrailer(26, "\x09"), withTrailer(25, "\0"s),
                withTrailer(25, "\xFF")}},
        Bodies{"KeysThatAreNoText",
               {BinaryPropertyList{{"\xD1\x01\x02"s, "\x10\x05", "\x09"}}.bytes(),
                BinaryPropertyList{{"\xD1\x01\x02"s, "\xD0", "\x09"}}.bytes(),
                BinaryPropertyList{{"\xD1\x01\x02"s, "\x09", "\x09"}}.bytes()}},
        Bodies{"OtherVersions", {"bplist", "bplist01" + smallBinary.substr(8), "bplist15\x01"}}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    Others, UnreadablePlistTest,
    testing::Values(
        Bodies{"PlainText", {"Not Found", "404: no such file", "a b", "* * *"}},
        Bodies{"JSON", {"{\"API_KEY\": \"k-1\"}", "[\"a\"]", "{\"a\": {\"b\": [1, 2]}}"}},
        Bodies{"OldTextForm", {"{ a = b }", "{ a = ", "( a b )", "{ a = <0>; }", "{ a = \"b; }"}},
        Bodies{"AnyBytes",
               {std::string(100, '\0'), "\xFF\xD8\xFF\xE0\0\x10JFIF\0"s, "PK\x03\x04\x14\0\0\0"s,
                "\x1F\x8B\x08\0\0\0\0\0"s}}),
    test::rowName);

TEST_F(ConfigurePushPlistTest, EntitiesAreNotExpanded) {
  std::string doctype = "<!DOCTYPE plist [<!ENTITY a0 \"ha\">";
  for (int level = 1; level < 10; ++level) {
    doctype += "<!ENTITY a" + std::to_string(level) + " \"" +
               repeated("&a" + std::to_string(level - 1) + ";", 10) + "\">";
  }
  expectUnreadable(doctype + "]><plist><dict><key>a</key><string>&a9;</string></dict></plist>");
  expectUnreadable(doctype + "]><plist><dict><key>a</key><string>b</string></dict></plist>");
  expectUnreadable("<!DOCTYPE plist [<!ENTITY a \"" + std::string(tenMegabytes, 'x') +
                   "\">]><plist><string>" + repeated("&a;", 10'000) + "</string></plist>");
  EXPECT_LT(test::peakMegabytes(), 1000);
}

TEST_F(ConfigurePushPlistTest, NestingHasALimit) {
  expectUnreadable(
      inPlist(repeated("<array>", hundredThousand) + repeated("</array>", hundredThousand)));
  expectUnreadable(inPlist(repeated("<dict><key>a</key>", hundredThousand) + "<true/>" +
                           repeated("</dict>", hundredThousand)));
  expectUnreadable(repeated("<array>", hundredThousand));
  expectUnreadable(repeated("(", hundredThousand) + repeated(")", hundredThousand));
  expectUnreadable(repeated("{a=", hundredThousand) + "b;" + repeated("};", hundredThousand));

  constexpr unsigned size = 3;
  BinaryPropertyList arrays{{}, 0, size};
  BinaryPropertyList dictionaries{{"\x51z"}, 1, size};
  for (std::size_t level = 1; level <= hundredThousand; ++level) {
    arrays.objects.push_back("\xA1" + bigEndian(level, size));
    dictionaries.objects.push_back("\xD1" + bigEndian(0, size) + bigEndian(level + 1, size));
  }
  arrays.objects.emplace_back("\x09");
  dictionaries.objects.emplace_back("\x09");
  expectUnreadable(arrays.bytes());
  expectUnreadable(dictionaries.bytes());
}

TEST_F(ConfigurePushPlistTest, FewBytesDoNotStandForMany) {
  expectUnreadable(test::doublingReferences().bytes());

  BinaryPropertyList repeating;
  repeating.objects.push_back("\xAF\x11\x27\x10" + std::string(10'000, '\x01'));
  repeating.objects.push_back("\x5F\x12" + bigEndian(tenMegabytes, 4) +
                              std::string(tenMegabytes, 'x'));
  expectUnreadable(repeating.bytes());
  EXPECT_LT(test::peakMegabytes(), 1000);
}

TEST_F(ConfigurePushPlistTest, TenMegabytesOfSomethingElseAreUnreadable) {
  expectUnreadable(inPlist("<array>" + repeated("<true/>", tenMegabytes / 7) + "</array>"));
  expectUnreadable("<plist><dict><key>" + std::string(tenMegabytes, 'x'));
  expectUnreadable("<plist " + std::string(tenMegabytes / 4, ' '));
  expectUnreadable("<html>" + std::string(tenMegabytes / 4, 'x') + "</html>");
  expectUnreadable(std::string(tenMegabytes / 4, '\0'));
  expectUnreadable("\"" + std::string(tenMegabytes / 4, 'x'));
  expectUnreadable("bplist00" + std::string(tenMegabytes, '\xFF'));
  EXPECT_LT(test::peakMegabytes(), 1000);
}

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
    testing::Values(Bodies{"Array",
                           {inPlist("<array/>"), inPlist("<array><dict/></array>"),
                            binaryOf("\xA0"), "(a, b)"}},
                    Bodies{"Text",
                           {inPlist("<string>a</string>"), inPlist("<string/>"), binaryOf("\x51z"),
                            "Forbidden", "\"a b\"", "404", "b", "bplis"}},
                    Bodies{"Number",
                           {inPlist("<integer>1</integer>"), inPlist("<real>1.5</real>"),
                            binaryOf("\x10\x01"), binaryOf("\x22\x3F\x80\0\0"s)}},
                    Bodies{"Boolean", {inPlist("<true/>"), inPlist("<false/>"), binaryOf("\x09")}},
                    Bodies{"Date",
                           {inPlist("<date>2026-11-16T00:10:00Z</date>"),
                            binaryOf("\x33"s + std::string(8, '\0'))}},
                    Bodies{"Data", {inPlist("<data>AQID</data>"), binaryOf("\x41z"), "<0fbd77>"}}),
    test::rowName);

TEST_F(ConfigurePushPlistTest, NoBytesAreNoData) {
  for (const int status : {200, 204, 304, 404, 500}) {
    SCOPED_TRACE(status);
    EXPECT_EQ(storyOf("", status), test::story::notDownloaded(noData));
    expectNothingHandedOver();
  }
}

// As the platform's reader of the old text form has it.
TEST_F(ConfigurePushPlistTest, WhiteSpaceIsAnEmptyDictionary) {
  for (const char* body : {" ", "\n", " \t\r\n"}) {
    EXPECT_EQ(storyOf(body), test::story::registered());
    expectHandedOver({});
  }
}

TEST_F(ConfigurePushPlistTest, AnEmptyDictionaryIsStored) {
  for (const std::string& body :
       {inPlist("<dict/>"), inPlist("<dict></dict>"), binaryOf("\xD0"), "{}"s}) {
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

// One of each kind, with the values that are easily lost; all that XML can hold.
ValueMap everything() {
  return {{"text", "plain"},
          {"", "an empty key"},
          {"emoji 😀", "ä€😀\t\n \"'&<>]]>"},
          {"carriage return", "\r\n\r"},
          {"zero", 0},
          {"negative", -1},
          {"least", std::numeric_limits<std::int64_t>::min()},
          {"unsigned", std::numeric_limits<std::uint64_t>::max()},
          {"real", 0.1},
          {"whole real", 1.0},
          {"tiny", 5e-324},
          {"yes", true},
          {"no", false},
          {"date", Date{1794787800}},
          {"first date", Date{-62135596800}},
          {"no data", Bytes()},
          {"data", Bytes{0, 1, 2, 253, 254, 255}},
          {"list", Array{1, "a", Array(), ValueMap(), Array{Array{true}}}},
          {"in", ValueMap{{"in", ValueMap{{"in", Array{ValueMap{{"a", 1}}}}}}}}};
}

TEST_F(ConfigurePushPlistTest, EveryKindOfValueIsHandedOverAndStored) {
  for (const auto format : {serialization::xmlFormat, serialization::binaryFormat}) {
    EXPECT_EQ(storyOf(*serialization::writePropertyList(everything(), format).bytes),
              test::story::registered());
    expectHandedOver(everything());
  }
}

TEST_F(ConfigurePushPlistTest, TheOldTextFormIsHandedOverAndStored) {
  EXPECT_EQ(storyOf("// c\n{ API_KEY = \"k-1\"; list = (a, \"b c\", <0102>, {}); word; }\n"),
            test::story::registered());
  expectHandedOver(
      {{"API_KEY", "k-1"}, {"list", Array{"a", "b c", Bytes{1, 2}, ValueMap()}}, {"word", "word"}});
}

TEST_F(ConfigurePushPlistTest, OtherEncodingsAreStoredAsUTF8) {
  const std::u16string wide =
      u"\uFEFF<?xml version='1.0' encoding='UTF-16'?><dict><key>ä</key><string>😀</string></dict>";
  for (const std::string& body :
       {std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * 2),
        "<?xml version='1.0' encoding='ISO-8859-1'?><dict><key>\xE4</key>"
        "<string>&#x1F600;</string></dict>"s,
        "\xEF\xBB\xBF" + inPlist("<dict><key>ä</key><string>😀</string></dict>")}) {
    EXPECT_EQ(storyOf(body), test::story::registered());
    expectHandedOver({{"ä", "😀"}});
  }
}

TEST_F(ConfigurePushPlistTest, TheDeepestThatIsReadIsStored) {
  Value inner(ValueMap{});
  for (int level = 1; level < 512; ++level) inner = ValueMap{{"in", std::move(inner)}};
  const ValueMap values = *inner.get<ValueMap>();
  for (const auto format : {serialization::xmlFormat, serialization::binaryFormat}) {
    EXPECT_EQ(storyOf(*serialization::writePropertyList(values, format).bytes),
              test::story::registered());
    expectHandedOver(values);
  }
}

TEST_F(ConfigurePushPlistTest, TenMegabytesAreHandedOverAndStored) {
  const ValueMap values{{"text", std::string(tenMegabytes / 2, 'x')},
                        {"data", Bytes(tenMegabytes / 4, 0xA5)}};
  for (const auto format : {serialization::xmlFormat, serialization::binaryFormat}) {
    EXPECT_EQ(storyOf(*serialization::writePropertyList(values, format).bytes),
              test::story::registered());
    expectHandedOver(values);
  }
  EXPECT_LT(test::peakMegabytes(), 1000);
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
  for (const Case& each :
       {Case{"\x53x\0y"s, "x\0y"s}, Case{"\x51\x1B", "\x1B"}, Case{"\x61\xFF\xFE", "\uFFFE"},
        Case{"\x33" + bigEndian(std::bit_cast<std::uint64_t>(1e15), 8), Date{1e15 + 978307200}}}) {
    SCOPED_TRACE(testing::PrintToString(each.object));
    EXPECT_EQ(storyOf(BinaryPropertyList{{"\xD1\x01\x02"s, "\x51z", each.object}}.bytes()),
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
  BinaryPropertyList list{{"\x51z"}, 1, size};
  for (std::size_t level = 1; level < levels; ++level) {
    list.objects.push_back("\xD1" + bigEndian(0, size) + bigEndian(level + 1, size));
  }
  list.objects.push_back("\xAF\x12" + bigEndian(count, 4) +
                         repeated(bigEndian(levels + 1, size), count));
  list.objects.emplace_back("\x09");
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
  EXPECT_EQ(story, test::story::registered(test::story::notSaved(
                       "NSCocoaErrorDomain " + std::to_string(GetParam().error))));
  EXPECT_EQ(flow_.handled(), std::vector{test::propertyListValues()});
  EXPECT_EQ(ZibPushConfig::shared().savedFirebasePlistPath().has_value(),
            GetParam().isSomethingThere);
}

void setLongPath(const fs::path& documents, std::size_t length) {
  sim::setDocumentsDirectory(documents.string() + repeated("/deeper", length / 7));
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
                   sim::setDocumentsDirectory(documents.string() + "/" + std::string(300, 'n'));
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
  sim::setDocumentsDirectory(std::nullopt);
  EXPECT_EQ(flow_.run(), test::story::registered(""));
  EXPECT_EQ(flow_.handled(), std::vector{test::propertyListValues()});
  EXPECT_EQ(ZibPushConfig::shared().savedFirebasePlistPath(), std::nullopt);
}

}  // namespace
