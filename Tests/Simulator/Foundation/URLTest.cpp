// NSURL and NSURLComponents where GNUstep's own differ from the phone's.

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "Platform/AutoreleasePool.h"
#include "Platform/Class.h"
#include "Platform/Send.h"
#include "Platform/Strings.h"
#include "Platform/URL.h"
#include "Simulator/Foundation/Foundation.h"

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

class URLTest : public testing::Test {
 protected:
  URLTest() { sim::installFoundation(); }

 private:
  zib::AutoreleasePool pool_;
};

class ValidURLTest : public URLTest, public testing::WithParamInterface<const char*> {};
class InvalidURLTest : public URLTest, public testing::WithParamInterface<std::string> {};

id urlClass() { return classNamed<"NSURL">().object(); }

id urlWithString(std::string_view text) {
  return send<id>(urlClass(), selector<"URLWithString:">(), makeString(text).raw());
}

std::string absoluteString(id url) { return utf8From(send<id>(url, selector<"absoluteString">())); }

std::string textOf(id url, const char* part) {
  const id text = send<id>(url, zib::Selector(part));
  return text == nullptr ? "(none)" : utf8From(text);
}

TEST_P(ValidURLTest, KeepsItsText) {
  const std::optional<URL> url = URL::parse(GetParam());
  ASSERT_TRUE(url);
  EXPECT_EQ(url->absoluteString(), GetParam());
  EXPECT_EQ(absoluteString(urlWithString(GetParam())), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    , ValidURLTest,
    testing::Values("http://host?query", "http://host#fragment", "http://user@host:80?q#f",
                    "app://?q=1", "app://#f", "HTTP://Host/Path", "http://h/?", "http://h/#",
                    "http://h/?#", "http://h/?a=1#", "http://h?", "file:x", "http://h:/",
                    "http://h:99999/", "http://[::1]:80/x", "http://user:p:q@h/", "mailto:a@b?c=d",
                    "tel:+49", "app:", "app://", "//host/path", "?q", "#f", "path", "./a:b",
                    "http://h/a?b?c/d", "http://h/%E2%82%AC", "http://h/a;b;c", "about:blank"));

TEST_P(InvalidURLTest, IsNoURL) {
  EXPECT_FALSE(URL::parse(GetParam()));
  EXPECT_EQ(urlWithString(GetParam()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(, InvalidURLTest,
                         testing::Values("", "http://h/a#b#c", "http://h/[x]", "http://h/?a[]=1",
                                         "http://h]/", "http://[::1", "http://[zz]/",
                                         "http://h:abc/", "http://h:-1/", "1a://h", "http://a@b@c/",
                                         "http://h/a b", " http://h", "http://h\n", "http://h/\x01",
                                         "http://h/\x7F", "http://h/ä", "http://h\\x", "http://h/^",
                                         "http://h/{}", "http://h/|", "http://h/<>", "http://h/\"",
                                         "http://h/%", "http://h/%4", "http://h/%zz", ":x",
                                         std::string("http://h/\0x", 11)));

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

struct Query {
  const char* url;
  // One text for each item: `name`, or `name=value`, decoded.
  std::vector<std::string> items;
};

void PrintTo(const Query& query, std::ostream* out) { *out << query.url; }

class QueryTest : public URLTest, public testing::WithParamInterface<Query> {};

TEST_P(QueryTest, IsSplitIntoItems) {
  std::vector<std::string> items;
  for (const zib::QueryItem& item : URL::parse(GetParam().url)->queryItems()) {
    items.push_back(item.value ? item.name + '=' + *item.value : item.name);
  }
  EXPECT_EQ(items, GetParam().items);
}

INSTANTIATE_TEST_SUITE_P(
    , QueryTest,
    testing::Values(Query{"http://h/?a=1&b=&c", {"a=1", "b=", "c"}},
                    Query{"http://h?a=1#f", {"a=1"}}, Query{"app://?a=1", {"a=1"}},
                    Query{"mailto:x@y?a=1", {"a=1"}}, Query{"app:page?a=1", {"a=1"}},
                    Query{"page?a=1", {"a=1"}}, Query{"http://h/?a&&b", {"a", "", "b"}},
                    Query{"http://h/?&", {"", ""}}, Query{"http://h/?a=b=c", {"a=b=c"}},
                    Query{"http://h/?a+b=c+d", {"a+b=c+d"}}, Query{"http://h/?a=%FF", {"a"}},
                    Query{"http://h/?a=%26%3D%F0%9F%98%80", {"a=&=😀"}},
                    Query{"http://h/?a=1&a=2", {"a=1", "a=2"}}, Query{"http://h/?", {}},
                    Query{"http://h/", {}}, Query{"http://h/#?a=1", {}},
                    Query{"http://h/?a=1?b=2", {"a=1?b=2"}}));

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
