// NSURL and NSURLComponents where GNUstep's own differ from the phone's.

#include <gtest/gtest.h>

#include <vector>

#include "Simulator/Foundation/Foundation.h"
#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::classNamed;
using zib::makeString;
using zib::selector;
using zib::send;
using zib::URL;
using zib::utf8From;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::UInteger;

class URLTest : public test::FoundationTest {};

id urlClass() { return classNamed<"NSURL">().object(); }

id urlWithString(std::string_view text) {
  return send<id>(urlClass(), selector<"URLWithString:">(), makeString(text).raw());
}

std::string absoluteString(id url) { return utf8From(send<id>(url, selector<"absoluteString">())); }

std::string textOf(id url, const char* part) {
  const id text = send<id>(url, zib::Selector(part));
  return text == nullptr ? "(none)" : utf8From(text);
}

TEST_F(URLTest, ValidTextsAreURLsAndKeptAsTheyAre) {
  for (const char* text : {"http://host?query",
                           "http://host#fragment",
                           "http://user@host:80?q#f",
                           "app://?q=1",
                           "app://#f",
                           "HTTP://Host/Path",
                           "http://h/?",
                           "http://h/#",
                           "http://h/?#",
                           "http://h/?a=1#",
                           "http://h?",
                           "file:x",
                           "http://h:/",
                           "http://h:99999/",
                           "http://[::1]:80/x",
                           "http://user:p:q@h/",
                           "mailto:a@b?c=d",
                           "tel:+49",
                           "app:",
                           "app://",
                           "//host/path",
                           "?q",
                           "#f",
                           "path",
                           "./a:b",
                           "http://h/a?b?c/d",
                           "http://h/%E2%82%AC",
                           "http://h/a;b;c",
                           "about:blank"}) {
    SCOPED_TRACE(text);
    const std::optional<URL> url = URL::parse(text);
    ASSERT_TRUE(url);
    EXPECT_EQ(url->text().utf8(), text);
    EXPECT_EQ(absoluteString(urlWithString(text)), text);
  }
}

TEST_F(URLTest, InvalidTextsAreNoURLs) {
  const std::vector<std::string> texts{"",
                                       "http://h/a#b#c",
                                       "http://h/[x]",
                                       "http://h/?a[]=1",
                                       "http://h]/",
                                       "http://[::1",
                                       "http://[zz]/",
                                       "http://h:abc/",
                                       "http://h:-1/",
                                       "1a://h",
                                       "http://a@b@c/",
                                       "http://h/a b",
                                       " http://h",
                                       "http://h\n",
                                       "http://h/\x01",
                                       "http://h/\x7F",
                                       "http://h/ä",
                                       "http://h\\x",
                                       "http://h/^",
                                       "http://h/{}",
                                       "http://h/|",
                                       "http://h/<>",
                                       "http://h/\"",
                                       "http://h/%",
                                       "http://h/%4",
                                       "http://h/%zz",
                                       ":x",
                                       std::string("http://h/\0x", 11)};
  for (const std::string& text : texts) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(URL::parse(text));
  }
}

TEST_F(URLTest, TheSystemRepairsUnlessItIsToldNotTo) {
  EXPECT_EQ(absoluteString(urlWithString("http://h/a b")), "http://h/a%20b");
  EXPECT_EQ(absoluteString(urlWithString("http://h/?a[]=1")), "http://h/?a%5B%5D=1");
}

// Not of the fixture, whose system is of a later version.
TEST(LegacyURLTest, BracketsStandAnywhereAndNothingIsRepaired) {
  const zib::AutoreleasePool pool;
  sim::foundation::setSystemVersion(16, 4);
  sim::foundation::install();
  for (const char* text : {"http://h/?a[]=1", "http://h/[x]#[y]"}) {
    EXPECT_EQ(absoluteString(urlWithString(text)), text);
    EXPECT_EQ(URL::parse(text).value().text().utf8(), text);
  }
  EXPECT_EQ(URL::parse("http://h/?a[]=1&b=2")->queryItems().front().name.utf8(), "a[]");
  EXPECT_EQ(urlWithString("http://h/a b"), nullptr);
  EXPECT_FALSE(classNamed<"NSURL">().instanceMethod(
      selector<"initWithString:encodingInvalidCharacters:">()));
}

TEST_F(URLTest, NilIsNoURL) {
  EXPECT_EQ(send<id>(urlClass(), selector<"URLWithString:">(), id{nullptr}), nullptr);
}

TEST_F(URLTest, InvalidCharactersAreEncodedOnlyOnRequest) {
  const auto parse = [](const char* text, BOOL encodes) {
    return send<id>(urlClass(), selector<"URLWithString:encodingInvalidCharacters:">(),
                    makeString(text).raw(), encodes);
  };
  EXPECT_EQ(parse("http://h/a b", 0), nullptr);
  EXPECT_EQ(absoluteString(parse("http://h/a b%20%z?ä", 1)), "http://h/a%20b%20%25z?%C3%A4");
  EXPECT_EQ(parse("http://h:abc", 1), nullptr);
}

TEST_F(URLTest, PartsOfAURLWithoutPathAreFound) {
  const id url = urlWithString("http://host?q=1#f");
  EXPECT_EQ(textOf(url, "scheme"), "http");
  EXPECT_EQ(textOf(url, "host"), "host");
  EXPECT_EQ(textOf(url, "query"), "q=1");
  EXPECT_EQ(textOf(url, "fragment"), "f");
}

TEST_F(URLTest, RelativeURLsAreResolvedAgainstTheirBase) {
  const id url = send<id>(urlClass(), selector<"URLWithString:relativeToURL:">(),
                          makeString("c?d").raw(), urlWithString("http://h/a/b"));
  EXPECT_EQ(absoluteString(url), "http://h/a/c?d");
}

TEST_F(URLTest, FileURLsOfAnyPathAreMade) {
  for (const char* path : {"/tmp/a b", "/tmp/[x]", "/tmp/ä😀", "/tmp/a#b?c", "/tmp/a%20b;c"}) {
    const id url = send<id>(urlClass(), selector<"fileURLWithPath:isDirectory:">(),
                            makeString(path).raw(), BOOL{0});
    EXPECT_EQ(textOf(url, "path"), path);
  }
}

// One text for each item: `name`, or `name=value`, decoded.
std::vector<std::string> itemsOf(const char* url) {
  std::vector<std::string> items;
  for (const zib::QueryItem& item : URL::parse(url)->queryItems()) {
    items.push_back(item.name.utf8() + (item.value ? '=' + item.value.utf8() : ""));
  }
  return items;
}

TEST_F(URLTest, QueriesAreSplitIntoItems) {
  struct Query {
    const char* url;
    std::vector<std::string> items;
  };
  const Query queries[] = {{"http://h/?a=1&b=&c", {"a=1", "b=", "c"}},
                           {"http://h?a=1#f", {"a=1"}},
                           {"app://?a=1", {"a=1"}},
                           {"mailto:x@y?a=1", {"a=1"}},
                           {"app:page?a=1", {"a=1"}},
                           {"page?a=1", {"a=1"}},
                           {"http://h/?a&&b", {"a", "", "b"}},
                           {"http://h/?&", {"", ""}},
                           {"http://h/?a=b=c", {"a=b=c"}},
                           {"http://h/?a+b=c+d", {"a+b=c+d"}},
                           {"http://h/?a=%FF", {"a"}},
                           {"http://h/?a=%26%3D%F0%9F%98%80", {"a=&=😀"}},
                           {"http://h/?%FF=1", {"=1"}},
                           {"http://h/?a%00b=c%00d", {std::string("a\0b=c\0d", 7)}},
                           {"http://h/?a=1&a=2", {"a=1", "a=2"}},
                           {"http://h/?", {}},
                           {"http://h/", {}},
                           {"http://h/#?a=1", {}},
                           {"http://h/?a=1?b=2", {"a=1?b=2"}}};
  for (const Query& query : queries) {
    SCOPED_TRACE(query.url);
    EXPECT_EQ(itemsOf(query.url), query.items);
  }
}

TEST_F(URLTest, AnEmptyQueryHasNoItemsAndAMissingOneHasNoList) {
  const auto queryItems = [](const char* text) {
    const id components = send<id>(classNamed<"NSURLComponents">().object(),
                                   selector<"componentsWithURL:resolvingAgainstBaseURL:">(),
                                   urlWithString(text), BOOL{1});
    return send<id>(components, selector<"queryItems">());
  };
  ASSERT_NE(queryItems("http://h/?"), nullptr);
  EXPECT_EQ(send<UInteger>(queryItems("http://h/?"), selector<"count">()), 0U);
  EXPECT_EQ(queryItems("http://h/"), nullptr);
}

}  // namespace
