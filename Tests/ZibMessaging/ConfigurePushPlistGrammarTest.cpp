// Which bytes are a property list to a configure-push flow, from the server's socket on: of each
// form, damaged and whole, small and huge.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "Tests/Simulator/Foundation/ReadersAndWriters.h"
#include "Tests/Support/BinaryPropertyListParts.h"
#include "Tests/Support/DocumentFlowTest.h"
#include "Tests/Support/Repeated.h"
#include "Tests/Support/RowName.h"

namespace {

using namespace std::string_literals;
using test::bigEndian;
using test::binaryOf;
using test::BinaryPropertyList;
using test::Bodies;
using test::hundredThousand;
using test::inPlist;
using test::repeated;
using test::smallBinaryOf;
using test::tenMegabytes;
using test::truncationsOf;
using zib::Array;
using zib::Bytes;
using zib::Date;
using zib::Value;
using zib::ValueMap;

namespace binary = test::binary;
using binary::Kind;

constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();

class ConfigurePushPlistGrammarTest : public test::PlistFlowTest {};

class UnreadablePlistTest : public ConfigurePushPlistGrammarTest,
                            public testing::WithParamInterface<Bodies> {};

TEST_P(UnreadablePlistTest, EndsTheFlowWithTheReadersError) {
  for (const std::string& body : GetParam().bodies) expectUnreadable(body);
}

// With some of the trailer's bytes replaced, counted from the end.
std::string withTrailer(std::size_t fromEnd, const std::string& bytes) {
  std::string list = binaryOf(binary::dictionary({}, {}));
  return list.replace(list.size() - fromEnd, bytes.size(), bytes);
}

const std::string smallXML = inPlist("<dict><key>a</key><string>b</string></dict>");
const std::string smallBinary = smallBinaryOf(binary::text("x"), binary::text("y"));

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
               {binaryOf(binary::array({0})),
                BinaryPropertyList{{binary::array({1, 1}), binary::array({0, 0})}}.bytes(),
                BinaryPropertyList{{binary::dictionary({1}, {0}), binary::text("z")}}.bytes()}},
        Bodies{"HugeLengths",
               {binaryOf(binary::longObject(Kind::data, huge >> 1U, 3)),
                binaryOf(binary::longObject(Kind::text, huge, 3)),
                binaryOf(binary::longObject(Kind::wideText, huge / 2 + 1, 3)),
                binaryOf(binary::longObject(Kind::array, 0x7FFFFFFF, 2)),
                binaryOf(binary::longObject(Kind::dictionary, huge / 2 + 1, 3)),
                binaryOf(binary::longObject(Kind::dictionary, 0xFFFFFFFF, 2))}},
        Bodies{"HugeCounts",
               {withTrailer(24, std::string(8, '\xFF')), withTrailer(24, bigEndian(1U << 31U, 8)),
                withTrailer(24, bigEndian(0, 8))}},
        Bodies{"HugeReferences",
               {withTrailer(16, std::string(8, '\xFF')), binaryOf(binary::array({0x7F})),
                binaryOf(binary::dictionary({0x7F}, {0x7F})), withTrailer(16, bigEndian(1, 8))}},
        Bodies{"HugeOffsets",
               {withTrailer(8, std::string(8, '\xFF')), withTrailer(8, bigEndian(1U << 31U, 8)),
                withTrailer(36, std::string(4, '\xFF')), withTrailer(36, std::string(4, '\0'))}},
        Bodies{"BadSizes",
               {withTrailer(26, "\0"s), withTrailer(26, bigEndian(9, 1)), withTrailer(25, "\0"s),
                withTrailer(25, "\xFF")}},
        Bodies{"KeysThatAreNoText",
               {smallBinaryOf(binary::integer(5), binary::yes()),
                smallBinaryOf(binary::dictionary({}, {}), binary::yes()),
                smallBinaryOf(binary::yes(), binary::yes())}},
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

TEST_F(ConfigurePushPlistGrammarTest, EntitiesAreNotExpanded) {
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

TEST_F(ConfigurePushPlistGrammarTest, NestingHasALimit) {
  expectUnreadable(
      inPlist(repeated("<array>", hundredThousand) + repeated("</array>", hundredThousand)));
  expectUnreadable(inPlist(repeated("<dict><key>a</key>", hundredThousand) + "<true/>" +
                           repeated("</dict>", hundredThousand)));
  expectUnreadable(repeated("<array>", hundredThousand));
  expectUnreadable(repeated("(", hundredThousand) + repeated(")", hundredThousand));
  expectUnreadable(repeated("{a=", hundredThousand) + "b;" + repeated("};", hundredThousand));

  constexpr unsigned size = 3;
  BinaryPropertyList arrays{{}, 0, size};
  BinaryPropertyList dictionaries{{binary::text("z")}, 1, size};
  for (std::size_t level = 1; level <= hundredThousand; ++level) {
    arrays.objects.push_back(binary::array({level}, size));
    dictionaries.objects.push_back(binary::dictionary({0}, {level + 1}, size));
  }
  arrays.objects.push_back(binary::yes());
  dictionaries.objects.push_back(binary::yes());
  expectUnreadable(arrays.bytes());
  expectUnreadable(dictionaries.bytes());
}

TEST_F(ConfigurePushPlistGrammarTest, FewBytesDoNotStandForMany) {
  expectUnreadable(test::doublingReferences().bytes());

  BinaryPropertyList repeating;
  repeating.objects.push_back(
      binary::longObject(Kind::array, 10'000, 1, std::string(10'000, '\x01')));
  repeating.objects.push_back(
      binary::longObject(Kind::text, tenMegabytes, 2, std::string(tenMegabytes, 'x')));
  expectUnreadable(repeating.bytes());
  EXPECT_LT(test::peakMegabytes(), 1000);
}

TEST_F(ConfigurePushPlistGrammarTest, TenMegabytesOfSomethingElseAreUnreadable) {
  expectUnreadable(inPlist("<array>" + repeated("<true/>", tenMegabytes / 7) + "</array>"));
  expectUnreadable("<plist><dict><key>" + std::string(tenMegabytes, 'x'));
  expectUnreadable("<plist " + std::string(tenMegabytes / 4, ' '));
  expectUnreadable("<html>" + std::string(tenMegabytes / 4, 'x') + "</html>");
  expectUnreadable(std::string(tenMegabytes / 4, '\0'));
  expectUnreadable("\"" + std::string(tenMegabytes / 4, 'x'));
  expectUnreadable("bplist00" + std::string(tenMegabytes, '\xFF'));
  EXPECT_LT(test::peakMegabytes(), 1000);
}

// As the platform's reader of the old text form has it.
TEST_F(ConfigurePushPlistGrammarTest, WhiteSpaceIsAnEmptyDictionary) {
  for (const char* body : {" ", "\n", " \t\r\n"}) {
    EXPECT_EQ(storyOf(body), test::story::registered());
    expectHandedOver({});
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

TEST_F(ConfigurePushPlistGrammarTest, EveryKindOfValueIsHandedOverAndStored) {
  for (const auto format : {serialization::xmlFormat, serialization::binaryFormat}) {
    EXPECT_EQ(storyOf(*serialization::writePropertyList(everything(), format).bytes),
              test::story::registered());
    expectHandedOver(everything());
  }
}

TEST_F(ConfigurePushPlistGrammarTest, TheOldTextFormIsHandedOverAndStored) {
  EXPECT_EQ(storyOf("// c\n{ API_KEY = \"k-1\"; list = (a, \"b c\", <0102>, {}); word; }\n"),
            test::story::registered());
  expectHandedOver(
      {{"API_KEY", "k-1"}, {"list", Array{"a", "b c", Bytes{1, 2}, ValueMap()}}, {"word", "word"}});
}

TEST_F(ConfigurePushPlistGrammarTest, OtherEncodingsAreStoredAsUTF8) {
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

TEST_F(ConfigurePushPlistGrammarTest, TheDeepestThatIsReadIsStored) {
  Value inner(ValueMap{});
  for (int level = 1; level < 512; ++level) inner = ValueMap{{"in", std::move(inner)}};
  const ValueMap values = *inner.get<ValueMap>();
  for (const auto format : {serialization::xmlFormat, serialization::binaryFormat}) {
    EXPECT_EQ(storyOf(*serialization::writePropertyList(values, format).bytes),
              test::story::registered());
    EXPECT_EQ(flow_.handled().size(), 1U);
    const auto stored = flow_.stored();
    ASSERT_TRUE(stored);
    EXPECT_EQ(serialization::readPropertyList(*stored).value, Value(values));
  }
}

TEST_F(ConfigurePushPlistGrammarTest, TenMegabytesAreHandedOverAndStored) {
  const ValueMap values{{"text", std::string(tenMegabytes / 2, 'x')},
                        {"data", Bytes(tenMegabytes / 4, 0xA5)}};
  for (const auto format : {serialization::xmlFormat, serialization::binaryFormat}) {
    EXPECT_EQ(storyOf(*serialization::writePropertyList(values, format).bytes),
              test::story::registered());
    expectHandedOver(values);
  }
  EXPECT_LT(test::peakMegabytes(), 1000);
}

}  // namespace
