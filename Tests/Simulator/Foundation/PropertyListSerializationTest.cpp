// NSPropertyListSerialization, which GNUstep has for trusted documents only. A second
// implementation of both forms says whether ours are what others read and write.

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

#include "Tests/Simulator/Foundation/ReadersAndWriters.h"
#include "Tests/Support/BinaryPropertyListParts.h"
#include "Tests/Support/PlatformTest.h"
#include "Tests/Support/RowName.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace {

using namespace serialization;
using namespace std::string_literals;
namespace binary = test::binary;
using Binary = test::BinaryPropertyList;
using binary::Kind;
using zib::Array;
using zib::Bytes;
using zib::Date;
using zib::selector;
using zib::send;
using zib::Value;
using zib::ValueMap;
using zib::objc::id;
using zib::objc::UInteger;

constexpr double infinity = std::numeric_limits<double>::infinity();

class PropertyListSerializationTest : public test::FoundationTest {};

std::string inPlist(std::string_view element) {
  return "<plist version=\"1.0\">" + std::string(element) + "</plist>";
}

// What the only element of a document reads as.
Value element(std::string_view text) {
  const Read read = readPropertyList(inPlist(text));
  if (!read.value) ADD_FAILURE() << text << ": " << read.error.description;
  return read.value.value_or(Value());
}

// One of each kind, with the values that are easily lost.
ValueMap everything() {
  return {{"text", "plain"},
          {"", "an empty key"},
          {"empty", ""},
          {"emoji 😀", "ä€😀\t\n \"'&<>]]>"},
          {"carriage return", "\r\n\r"},
          {"long", std::string(100'000, 'x')},
          {"zero", 0},
          {"one byte", 255},
          {"two bytes", 65535},
          {"four bytes", std::int64_t{4294967295}},
          {"negative", -1},
          {"least", std::numeric_limits<std::int64_t>::min()},
          {"most", std::numeric_limits<std::int64_t>::max()},
          {"unsigned", std::numeric_limits<std::uint64_t>::max()},
          {"real", 0.1},
          {"whole real", 1.0},
          {"tiny", 5e-324},
          {"huge", 1.7976931348623157e308},
          {"infinite", -infinity},
          {"yes", true},
          {"no", false},
          {"date", Date{1794787800}},
          {"first date", Date{-62135596800}},
          {"last date", Date{253402300799}},
          {"no data", Bytes()},
          {"data", Bytes{0, 1, 2, 253, 254, 255}},
          {"more data", Bytes(1000, 0xA5)},
          {"list", Array{1, "a", Array(), ValueMap(), Array{Array{true}}}},
          {"twenty", Array(20, Value("same"))}};
}

// The value without what the other implementation cannot hold.
ValueMap everythingCommon() {
  ValueMap common;
  for (const zib::Member& member : everything()) {
    const bool isBeyondIt = member.key == "negative" || member.key == "least" ||
                            member.key == "unsigned" || member.key == "carriage return" ||
                            member.key == "infinite" || member.key == "first date" ||
                            member.key == "last date";
    if (!isBeyondIt) common.append(member.key, member.value);
  }
  return common;
}

using Tree = std::unique_ptr<void, decltype(&plist_free)>;

std::string takeText(char* text, std::uint32_t length) {
  std::string result(text, length);
  std::free(text);
  return result;
}

std::string otherXML(const Tree& tree) {
  char* text = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(tree.get(), &text, &length);
  return takeText(text, length);
}

std::string otherBinary(const Tree& tree) {
  char* text = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(tree.get(), &text, &length);
  return takeText(text, length);
}

Tree otherTree(const std::string& bytes) {
  plist_t tree = nullptr;
  // One function for both forms takes other arguments in each version of the library.
  const auto read = bytes.starts_with("bplist") ? &plist_from_bin : &plist_from_xml;
  read(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &tree);
  return {tree, &plist_free};
}

TEST_F(PropertyListSerializationTest, EveryKindOfValueSurvivesBothForms) {
  for (const UInteger format : {xmlFormat, binaryFormat}) {
    const Written written = writePropertyList(everything(), format);
    ASSERT_TRUE(written.bytes) << written.error.description;
    const Read read = readPropertyList(*written.bytes);
    EXPECT_EQ(read.format, format);
    EXPECT_EQ(read.value, Value(everything()));
  }
}

TEST_F(PropertyListSerializationTest, AnotherImplementationReadsOursAndWeReadIts) {
  const Value expected(everythingCommon());
  for (const UInteger format : {xmlFormat, binaryFormat}) {
    const Tree tree = otherTree(*writePropertyList(expected, format).bytes);
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(readPropertyList(otherXML(tree)).value, expected);
    EXPECT_EQ(readPropertyList(otherBinary(tree)).value, expected);
  }
}

TEST_F(PropertyListSerializationTest, XMLIsAsThePlatformWritesIt) {
  const Value value(ValueMap{{"b", Array{true, -1, 1.5}},
                             {"a<", "x & y"},
                             {"c", ValueMap{{"d", Bytes{1, 2}}, {"e", Date{0}}}},
                             {"f", ValueMap()}});
  EXPECT_EQ(*writePropertyList(value, xmlFormat).bytes,
            R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>a&lt;</key>
	<string>x &amp; y</string>
	<key>b</key>
	<array>
		<true/>
		<integer>-1</integer>
		<real>1.5</real>
	</array>
	<key>c</key>
	<dict>
		<key>d</key>
		<data>
		AQI=
		</data>
		<key>e</key>
		<date>1970-01-01T00:00:00Z</date>
	</dict>
	<key>f</key>
	<dict/>
</dict>
</plist>
)");
}

TEST_F(PropertyListSerializationTest, AnEmptyDictionaryIsOne) {
  const Written written = writePropertyList(ValueMap(), xmlFormat);
  EXPECT_NE(written.bytes->find("<dict/>"), std::string::npos);
  EXPECT_EQ(readPropertyList(*written.bytes).value, Value(ValueMap()));
}

TEST_F(PropertyListSerializationTest, FractionsOfSecondsSurviveInTheBinaryForm) {
  const Value date(Date{1000.5});
  EXPECT_EQ(readPropertyList(*writePropertyList(date, binaryFormat).bytes).value, date);
  EXPECT_EQ(readPropertyList(*writePropertyList(date, xmlFormat).bytes).value, Value(Date{1000}));
}

TEST_F(PropertyListSerializationTest, NULSurvivesInTheBinaryForm) {
  const Value text("a\0b"s);
  EXPECT_EQ(readPropertyList(*writePropertyList(text, binaryFormat).bytes).value, text);
}

void expectUnwritable(id list, UInteger format) {
  const Written written = writePropertyList(list, format);
  ASSERT_FALSE(written.bytes);
  EXPECT_EQ(written.error.domain, "NSCocoaErrorDomain");
  EXPECT_EQ(written.error.code, 3851);
  EXPECT_TRUE(written.error.description.starts_with("The property list cannot be written: "));
}

void expectUnwritable(const Value& value, UInteger format) {
  expectUnwritable(zib::objectFrom(value).raw(), format);
}

TEST_F(PropertyListSerializationTest, WhatXMLCannotHoldIsAnError) {
  expectUnwritable("a\0b"s, xmlFormat);
  expectUnwritable("\x01", xmlFormat);
  expectUnwritable("\x1B[0m", xmlFormat);
  expectUnwritable("a\uFFFE", xmlFormat);
  expectUnwritable("\uFFFF", xmlFormat);
  expectUnwritable(ValueMap{{"\x02", 1}}, xmlFormat);
  expectUnwritable(Date{1e18}, xmlFormat);
}

TEST_F(PropertyListSerializationTest, WhatIsNoPropertyListIsAnError) {
  const id number =
      send<id>(zib::classNamed<"NSNumber">().object(), selector<"numberWithInt:">(), 1);
  const id numberKey = send<id>(zib::classNamed<"NSDictionary">().object(),
                                selector<"dictionaryWithObject:forKey:">(), number, number);
  const id set = send<id>(zib::classNamed<"NSSet">().object(), selector<"set">());
  const id url = send<id>(zib::classNamed<"NSURL">().object(), selector<"URLWithString:">(),
                          zib::makeString("http://host").raw());
  const zib::objc::UniChar half[] = {0xD83D};
  const id halfCharacter =
      send<id>(zib::classNamed<"NSString">().object(), selector<"stringWithCharacters:length:">(),
               static_cast<const zib::objc::UniChar*>(half), UInteger{1});
  for (const UInteger format : {xmlFormat, binaryFormat}) {
    expectUnwritable(id{nullptr}, format);
    expectUnwritable(Value(zib::Null()), format);
    expectUnwritable(ValueMap{{"a", Array{zib::Null()}}}, format);
    expectUnwritable(numberKey, format);
    expectUnwritable(set, format);
    expectUnwritable(url, format);
    expectUnwritable(halfCharacter, format);
  }
}

TEST_F(PropertyListSerializationTest, OtherFormatsAreNotWritten) {
  expectUnwritable(ValueMap(), textFormat);
  expectUnwritable(ValueMap(), 0);
}

TEST_F(PropertyListSerializationTest, AContainerInItselfIsNotWritten) {
  const zib::Object array = zib::objectFrom(Array());
  send<void>(array.raw(), selector<"addObject:">(), array.raw());
  expectUnwritable(array.raw(), xmlFormat);
  expectUnwritable(array.raw(), binaryFormat);
  send<void>(array.raw(), selector<"removeAllObjects">());
}

TEST_F(PropertyListSerializationTest, SharedObjectsThatStandForTooMuchAreNotWritten) {
  zib::Object list = zib::objectFrom(Array{1});
  for (int level = 0; level < 40; ++level) {
    const zib::Object twice = zib::objectFrom(Array());
    send<void>(twice.raw(), selector<"addObject:">(), list.raw());
    send<void>(twice.raw(), selector<"addObject:">(), list.raw());
    list = twice;
  }
  expectUnwritable(list.raw(), xmlFormat);
}

TEST_F(PropertyListSerializationTest, XMLThatIsDeepAndLongIsNotWritten) {
  const auto nested = [](std::size_t count) {
    Value list(Array(count, Value(1)));
    for (int level = 0; level < 500; ++level) {
      Array outer;
      outer.push_back(std::move(list));
      list = std::move(outer);
    }
    return list;
  };
  EXPECT_TRUE(writePropertyList(nested(100), xmlFormat).bytes);
  expectUnwritable(nested(150'000), xmlFormat);
}

TEST_F(PropertyListSerializationTest, XMLNeedsNoDeclaration) {
  const Value yes(true);
  for (const char* text :
       {"<plist><true/></plist>", "<true/>", "\n <?xml version='1.0'?><plist><true/></plist>\n",
        "<?xml version='1.0'?><!DOCTYPE plist SYSTEM 'x'><plist a='b'><!-- c "
        "--><true></true></plist>",
        "\xEF\xBB\xBF<plist><true/></plist>"}) {
    const Read read = readPropertyList(text);
    EXPECT_EQ(read.value, yes) << text;
    EXPECT_EQ(read.format, xmlFormat);
  }
}

TEST_F(PropertyListSerializationTest, XMLIsReadInItsEncoding) {
  EXPECT_EQ(
      readPropertyList("<?xml version='1.0' encoding='ISO-8859-1'?><string>\xE4</string>").value,
      Value("ä"));
  const std::u16string wide = u"\uFEFF<?xml version='1.0' encoding='UTF-16'?><string>😀</string>";
  EXPECT_EQ(readPropertyList({reinterpret_cast<const char*>(wide.data()), wide.size() * 2}).value,
            Value("😀"));
}

TEST_F(PropertyListSerializationTest, XMLStringsAreKeptWhole) {
  EXPECT_EQ(element("<string> a <![CDATA[<b>&amp;]]>&lt;c&#x1F600;<!-- d --> </string>"),
            Value(" a <b>&amp;<c😀 "));
  EXPECT_EQ(element("<string/>"), Value(""));
  EXPECT_EQ(element("<string>a\r\nb&#13;</string>"), Value("a\nb\r"));
}

TEST_F(PropertyListSerializationTest, XMLIntegers) {
  EXPECT_EQ(element("<integer> +12 </integer>"), Value(12));
  EXPECT_EQ(element("<integer>-0x10</integer>"), Value(-16));
  EXPECT_EQ(element("<integer>0XfF</integer>"), Value(255));
  EXPECT_EQ(element("<integer>18446744073709551615</integer>"),
            Value(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ(element("<integer>-9223372036854775808</integer>"),
            Value(std::numeric_limits<std::int64_t>::min()));
}

TEST_F(PropertyListSerializationTest, XMLRealsAndOthers) {
  EXPECT_EQ(element("<real>1</real>"), Value(1.0));
  EXPECT_EQ(element("<real> +1.5e3 </real>"), Value(1500.0));
  EXPECT_EQ(element("<real>-Infinity</real>"), Value(-infinity));
  EXPECT_TRUE(std::isnan(*element("<real>nan</real>").get<double>()));
  EXPECT_EQ(element("<data> AQ\n ID </data>"), Value(Bytes{1, 2, 3}));
  EXPECT_EQ(element("<date> 2026-11-16T00:10:00Z\n</date>"), Value(Date{1794787800}));
}

TEST_F(PropertyListSerializationTest, OfEqualKeysTheLastWins) {
  EXPECT_EQ(element("<dict><key>a</key><true/><key>a</key><false/></dict>"),
            Value(ValueMap{{"a", false}}));
}

void expectUnreadable(std::string_view bytes) {
  SCOPED_TRACE(bytes.substr(0, 200));
  const Read read = readPropertyList(bytes);
  serialization::expectReadersError(read, "The data is not a property list: ");
}

TEST_F(PropertyListSerializationTest, BadXMLValuesAreErrors) {
  for (const char* text : {"<integer/>",
                           "<integer>abc</integer>",
                           "<integer>1 2</integer>",
                           "<integer>1.5</integer>",
                           "<integer>--1</integer>",
                           "<integer>18446744073709551616</integer>",
                           "<integer>-9223372036854775809</integer>",
                           "<real/>",
                           "<real>x</real>",
                           "<real>+-1</real>",
                           "<real>1e400</real>",
                           "<real>nan(1)</real>",
                           "<date/>",
                           "<date>junk</date>",
                           "<date>2020-13-01T00:00:00Z</date>",
                           "<date>2021-02-29T00:00:00Z</date>",
                           "<date>2020-01-01T24:00:00Z</date>",
                           "<date>2020-01-01</date>",
                           "<data>A</data>",
                           "<data>A!==</data>",
                           "<data>AQ==BQ==</data>",
                           "<true>x</true>",
                           "<string>&#xD800;</string>",
                           "<string>&#0;</string>",
                           "<string>&unknown;</string>",
                           "<string>\x01</string>",
                           "<string>\xFF</string>"}) {
    expectUnreadable(inPlist(text));
  }
}

TEST_F(PropertyListSerializationTest, BadXMLStructuresAreErrors) {
  for (const char* text :
       {"<plist/>",
        "<plist></plist>",
        "<plist>text<true/></plist>",
        "<plist><true/><true/></plist>",
        "<plist><true/></plist>junk",
        "<plist><true/></plist><plist><true/></plist>",
        "<plist><true/>",
        "<plist><array></dict></plist>",
        "<plist><plist><true/></plist></plist>",
        "<plist><unknown/></plist>",
        "<html><body>Not found</body></html>",
        "<plist><string>a<b/></string></plist>",
        "<plist><dict><key>a</key></dict></plist>",
        "<plist><dict><true/></dict></plist>",
        "<plist><dict><key>a</key><key>b</key><true/></dict></plist>",
        "<plist><array><key>a</key></array></plist>",
        "<plist><key>a</key></plist>",
        "<!DOCTYPE plist [<!ENTITY a 'b'>]><plist><string>&a;</string></plist>",
        "<!DOCTYPE plist SYSTEM 'x'><plist><string>&a;</string></plist>",
        "<!DOCTYPE plist [<!ENTITY a SYSTEM 'file:///etc/passwd'>]><plist><true/></plist>"}) {
    expectUnreadable(text);
  }
}

TEST_F(PropertyListSerializationTest, TheReasonNamesTheLine) {
  const Read read = readPropertyList("<plist>\n<dict>\n<unknown/>\n</dict></plist>");
  EXPECT_NE(read.error.description.find("<unknown>"), std::string::npos);
  EXPECT_NE(read.error.description.find("(line 3)"), std::string::npos);
}

TEST_F(PropertyListSerializationTest, NestingHasALimit) {
  const auto repeated = [](std::string_view text, int count) {
    std::string result;
    for (int index = 0; index < count; ++index) result += text;
    return result;
  };
  const auto xml = [&](int depth) {
    return inPlist(repeated("<array>", depth) + repeated("</array>", depth));
  };
  const auto text = [&](int depth) { return repeated("(", depth) + repeated(")", depth); };
  EXPECT_TRUE(readPropertyList(xml(512)).value);
  expectUnreadable(xml(513));
  expectUnreadable(repeated("<array>", 1'000'000));
  EXPECT_TRUE(readPropertyList(text(512)).value);
  expectUnreadable(text(513));
  expectUnreadable(repeated("{a=", 1'000'000));
}

TEST_F(PropertyListSerializationTest, NoBytesAreNoPropertyList) {
  expectUnreadable("");
  id error = nullptr;
  EXPECT_EQ(send<id>(zib::classNamed<"NSPropertyListSerialization">().object(),
                     selector<"propertyListWithData:options:format:error:">(), id{nullptr},
                     UInteger{0}, static_cast<UInteger*>(nullptr), &error),
            nullptr);
  EXPECT_NE(error, nullptr);
}

TEST_F(PropertyListSerializationTest, FormatAndErrorNeedNotBeAskedFor) {
  const auto read = [](std::string_view text) {
    return send<id>(zib::classNamed<"NSPropertyListSerialization">().object(),
                    selector<"propertyListWithData:options:format:error:">(), dataOf(text).raw(),
                    UInteger{0}, static_cast<UInteger*>(nullptr), static_cast<id*>(nullptr));
  };
  EXPECT_NE(read("{}"), nullptr);
  EXPECT_EQ(read("{"), nullptr);
}

TEST_F(PropertyListSerializationTest, TheOldTextFormIsRead) {
  const Read read = readPropertyList(R"(// a comment
{ /* another */
  bare-word_1.2:/$ = "quoted \"text\" \n\\ \U00e4\UD83D\uDE00\U20ac";
  'single' = (one, "two", ( ), { }, <01 aB fF>, );
  shorthand;
  "octal \101\344" = 3;
}
)");
  EXPECT_FALSE(read.value);  // `\u` is no escape.
  const Read right = readPropertyList(R"(// a comment
{ /* another */
  bare-word_1.2:/$ = "quoted \"text\" \n\\ \U00e4\UD83D\UDE00\U20ac";
  'single' = (one, "two", ( ), { }, <01 aB fF>, );
  shorthand;
  "octal \101" = 3;
}
)");
  EXPECT_EQ(right.format, textFormat);
  EXPECT_EQ(
      right.value,
      Value(ValueMap{{"bare-word_1.2:/$", "quoted \"text\" \n\\ ä😀€"},
                     {"single", Array{"one", "two", Array(), ValueMap(), Bytes{1, 0xAB, 0xFF}}},
                     {"shorthand", "shorthand"},
                     {"octal A", "3"}}));
}

TEST_F(PropertyListSerializationTest, OtherRootsOfTheOldTextForm) {
  EXPECT_EQ(readPropertyList("word").value, Value("word"));
  EXPECT_EQ(readPropertyList("\"ä😀\"").value, Value("ä😀"));
  EXPECT_EQ(readPropertyList("<0fbd77 1c2735ae>").value,
            Value(Bytes{0x0F, 0xBD, 0x77, 0x1C, 0x27, 0x35, 0xAE}));
  EXPECT_EQ(readPropertyList("a = b; \"c\" = (d);").value,
            Value(ValueMap{{"a", "b"}, {"c", Array{"d"}}}));
  EXPECT_EQ(readPropertyList(" \n").value, Value(ValueMap()));
  EXPECT_EQ(readPropertyList("'\\351'").value, Value("Ø"));
}

TEST_F(PropertyListSerializationTest, BadTextIsAnError) {
  for (const std::string& text : std::vector<std::string>{"{",
                                                          "}",
                                                          "(",
                                                          ")",
                                                          "{a}",
                                                          "{a = b}",
                                                          "{a = }",
                                                          "{= b;}",
                                                          "{a = b;",
                                                          "(a b)",
                                                          "(,)",
                                                          "(a",
                                                          "\"a",
                                                          "'a\"",
                                                          "\"\\",
                                                          "<0",
                                                          "<0>",
                                                          "<0g>",
                                                          "<*I5>",
                                                          "<[AQ==]>",
                                                          "a b",
                                                          "a = b",
                                                          "/* a",
                                                          "\"\\U12\"",
                                                          "\"\\UD800\"",
                                                          "\"\\UDC00\"",
                                                          "Not Found",
                                                          "{a = b;} c",
                                                          "\xFF",
                                                          "a\0b"s,
                                                          "\xFF\xFE"s + "a",
                                                          "[1]",
                                                          "{\"a\": 1}"}) {
    expectUnreadable(text);
  }
}

TEST_F(PropertyListSerializationTest, BinaryObjectsOfEveryKind) {
  const auto root = [](const std::string& object) {
    return readPropertyList(Binary{{object}}.bytes()).value;
  };
  EXPECT_EQ(root(binary::no()), Value(false));
  EXPECT_EQ(root(binary::integer(255)), Value(255));
  EXPECT_EQ(root(binary::integer(static_cast<std::uint64_t>(-2), 3)), Value(-2));
  constexpr auto most = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(
      root(binary::object(Kind::integer, 4, test::bigEndian(0, 8) + test::bigEndian(most, 8))),
      Value(most));
  EXPECT_EQ(root(binary::real(1.0F)), Value(1.0));
  EXPECT_EQ(root(binary::date(0)), Value(Date{978307200}));
  EXPECT_EQ(root(binary::text("a")), Value("a"));
  EXPECT_EQ(root(binary::wideText(u"😀")), Value("😀"));
  EXPECT_EQ(root(binary::longObject(Kind::data, 1, 0, "z")), Value(Bytes{'z'}));
  EXPECT_EQ(root(binary::object(Kind::uid, 0, "\x07")), Value(ValueMap{{"CF$UID", 7}}));
}

struct BadObject {
  const char* name;
  std::string bytes;
};

class BadBinaryObjectTest : public test::FoundationTest,
                            public testing::WithParamInterface<BadObject> {};

TEST_P(BadBinaryObjectTest, IsAnError) { expectUnreadable(Binary{{GetParam().bytes}}.bytes()); }

INSTANTIATE_TEST_SUITE_P(
    Constant, BadBinaryObjectTest,
    testing::Values(BadObject{"Nothing", ""}, BadObject{"Null", binary::object(Kind::constant, 0)},
                    BadObject{"Fill", binary::object(Kind::constant, 0xF)},
                    BadObject{"UnknownKind7", binary::object(Kind{0x7}, 1, "z")},
                    BadObject{"UnknownKind9", binary::object(Kind{0x9}, 0)},
                    BadObject{"UnknownKindE", binary::object(Kind{0xE}, 0)},
                    BadObject{"UnknownKindF", binary::object(Kind{0xF}, 0)},
                    BadObject{"Set", binary::object(Kind::set, 0)}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    Number, BadBinaryObjectTest,
    testing::Values(
        BadObject{"IntegerOfUnknownSize", binary::object(Kind::integer, 5)},
        BadObject{"IntegerCutOff", binary::object(Kind::integer, 3, "\x01")},
        BadObject{"IntegerOf128Bits", binary::object(Kind::integer, 4, std::string(16, '\xFF'))},
        BadObject{"RealOfUnknownSize", binary::object(Kind::real, 1, "zz")},
        BadObject{"DateOfUnknownSize", binary::object(Kind::date, 2, "zzzz")},
        BadObject{"DateThatIsInfinite", binary::date(infinity)},
        BadObject{"DateThatIsNoNumber", binary::date(std::numeric_limits<double>::quiet_NaN())}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    Text, BadBinaryObjectTest,
    testing::Values(BadObject{"DataCutOff", binary::object(Kind::data, 4, "z")},
                    BadObject{"TextCutOff", binary::object(Kind::text, 2, "z")},
                    BadObject{"TextThatIsNotASCII", binary::text("\xFF")},
                    BadObject{"FirstSurrogateAlone", binary::wideText({u"\xD800", 1})},
                    BadObject{"SecondSurrogateAlone", binary::wideText({u"\xDC00", 1})},
                    BadObject{"WideTextCutOff", binary::object(Kind::wideText, 1, "z")}),
    test::rowName);

constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();

INSTANTIATE_TEST_SUITE_P(
    Length, BadBinaryObjectTest,
    testing::Values(
        BadObject{"UIDWithoutBytes", binary::object(Kind::uid, 0xF)},
        BadObject{"ArrayWithoutReferences", binary::object(Kind::array, 1)},
        BadObject{"ArrayOfUnknownObjects", binary::array({5})},
        BadObject{"DictionaryWithoutValue", binary::object(Kind::dictionary, 1, "\0"s)},
        BadObject{"DictionaryThatHoldsItself", binary::dictionary({0}, {0})},
        BadObject{"HugeData", binary::longObject(Kind::data, huge >> 1U, 3)},
        BadObject{"HugeWideText", binary::longObject(Kind::wideText, huge, 3)},
        BadObject{"HugeArray", binary::longObject(Kind::array, huge >> 1U, 3)},
        BadObject{"HugeDictionary", binary::longObject(Kind::dictionary, huge / 2 + 1, 3)},
        BadObject{"LengthThatIsNoInteger", binary::object(Kind::data, 0xF, binary::text(""))},
        BadObject{"LengthOfUnknownSize",
                  binary::object(Kind::data, 0xF, binary::object(Kind::integer, 4))},
        BadObject{"NoLength", binary::object(Kind::dictionary, 0xF)}),
    test::rowName);

TEST_F(PropertyListSerializationTest, BadBinaryFramesAreErrors) {
  const std::string good = Binary{{binary::yes()}}.bytes();
  ASSERT_TRUE(readPropertyList(good).value);
  for (std::size_t length = 6; length < good.size(); ++length) {
    expectUnreadable(good.substr(0, length));
  }
  const auto with = [&](std::size_t fromEnd, char byte) {
    std::string bytes = good;
    bytes[bytes.size() - fromEnd] = byte;
    return bytes;
  };
  expectUnreadable(with(26, 0));  // offset size
  expectUnreadable(with(26, 9));
  expectUnreadable(with(25, 0));  // reference size
  expectUnreadable(with(25, 9));
  expectUnreadable(with(24, '\x7F'));  // number of objects
  expectUnreadable(with(17, 0));
  expectUnreadable(with(16, '\x7F'));  // top object
  expectUnreadable(with(9, 1));
  expectUnreadable(with(8, '\x7F'));  // offset table
  expectUnreadable(with(1, 7));
  expectUnreadable(with(33, 7));  // the object's offset
  expectUnreadable(with(33, 9));
  expectUnreadable("bplist01" + good.substr(8));
}

TEST_F(PropertyListSerializationTest, BinaryReferencesInACircleAreErrors) {
  expectUnreadable(Binary{{binary::array({0})}}.bytes());
  expectUnreadable(Binary{{binary::array({1, 1}), binary::array({0, 0})}}.bytes());
  expectUnreadable(Binary{{binary::dictionary({1}, {0}), binary::text("z")}}.bytes());
}

TEST_F(PropertyListSerializationTest, BinaryReferencesThatStandForTooMuchAreErrors) {
  expectUnreadable(test::doublingReferences().bytes());

  Binary repeating;
  repeating.objects.push_back(
      binary::longObject(Kind::array, 10'000, 1, std::string(10'000, '\x01')));
  repeating.objects.push_back(binary::longObject(Kind::data, 0x4000, 1, std::string(0x4000, 'z')));
  expectUnreadable(repeating.bytes());
}

TEST_F(PropertyListSerializationTest, BinaryReferencesMayBeShared) {
  EXPECT_EQ(readPropertyList(Binary{{binary::array({1, 1}), binary::text("z")}}.bytes()).value,
            Value(Array{"z", "z"}));
}

TEST_F(PropertyListSerializationTest, BinaryKeysAreStringsAndTheLastOfEqualOnesWins) {
  expectUnreadable(Binary{{binary::dictionary({1}, {1}), binary::yes()}}.bytes());
  const Binary twice{
      {binary::dictionary({1, 1}, {2, 3}), binary::text("z"), binary::no(), binary::yes()}};
  EXPECT_EQ(readPropertyList(twice.bytes()).value, Value(ValueMap{{"z", true}}));
}

}  // namespace
