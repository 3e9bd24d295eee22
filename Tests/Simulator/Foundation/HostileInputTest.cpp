// Documents that somebody has damaged: each is read, or refused with an error, and what is read can
// be written and read again.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "Tests/Simulator/Foundation/ReadersAndWriters.h"
#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace {

using namespace serialization;
using zib::Array;
using zib::Value;
using zib::ValueMap;

class HostileInputTest : public test::FoundationTest {};

// Pieces that change the meaning of what surrounds them.
const std::vector<std::string> pieces = {
    "<",
    ">",
    "</",
    "<dict>",
    "</dict>",
    "<array>",
    "<key>",
    "<![CDATA[",
    "]]>",
    "&#x0;",
    "&lt;",
    "<!--",
    "-->",
    "<!DOCTYPE",
    "{",
    "}",
    "[",
    "]",
    "(",
    ")",
    ";",
    "=",
    ",",
    ":",
    "\"",
    "\\",
    "\\u",
    "\\UD83",
    "/*",
    "*/",
    "//",
    "1e999",
    "-",
    "0x",
    "null",
    "true",
    "?",
    "#",
    "%",
    "%zz",
    "//",
    "@",
    "\xFF",
    "\xED\xA0",
    "\xEF\xBB\xBF",
    "bplist",
    "\x7F",
    std::string(1, '\0'),
    std::string(8, '\xFF'),
    std::string(300, '('),
};

class Mutator {
 public:
  std::string operator()(std::string text) {
    for (std::size_t count = below(4) + 1; count > 0; --count) change(text);
    return text;
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }

  void change(std::string& text) {
    const std::size_t at = below(text.size() + 1);
    const std::size_t length = std::min(below(20), text.size() - at);
    switch (below(5)) {
      case 0:
        text.erase(at, length);
        break;
      case 1:
        text.insert(at, pieces[below(pieces.size())]);
        break;
      case 2:
        text.insert(below(text.size() + 1), text.substr(at, length));
        break;
      case 3:
        text.resize(at);
        break;
      default:
        if (at < text.size()) text[at] = static_cast<char>(below(256));
    }
  }

  // The same in each run.
  std::mt19937 random_{20'010'101};  // NOLINT(cert-msc51-cpp)
};

Value sample() {
  return ValueMap{{"text", "ä😀 \"quoted\""},
                  {"number", -5},
                  {"real", 1.5},
                  {"yes", true},
                  {"date", zib::Date{1794787800}},
                  {"data", zib::Bytes{1, 2, 3}},
                  {"list", Array{1, 255, Array(20, Value("x")), ValueMap{{"a", "b"}}}}};
}

template <class Check>
void forMutationsOf(const std::string& document, Check check) {
  Mutator mutate;
  for (int count = 0; count < 2'000; ++count) {
    const zib::AutoreleasePool pool;
    const std::string damaged = mutate(document);
    SCOPED_TRACE(testing::PrintToString(damaged));
    check(damaged);
    if (testing::Test::HasFailure()) return;
  }
}

void readsOrRefuses(const std::string& document) {
  forMutationsOf(document, [](const std::string& damaged) {
    const Read read = readPropertyList(damaged);
    if (!read.value) {
      EXPECT_EQ(read.error.code, 3840);
      return;
    }
    const Written written = writePropertyList(*read.value, binaryFormat);
    ASSERT_TRUE(written.bytes) << written.error.description;
    const Read again = readPropertyList(*written.bytes);
    ASSERT_TRUE(again.value) << again.error.description;
    // Compared as bytes, since what is no number equals nothing.
    EXPECT_EQ(writePropertyList(*again.value, binaryFormat).bytes, written.bytes);
    const Written xml = writePropertyList(*read.value, xmlFormat);
    if (xml.bytes) {
      EXPECT_TRUE(readPropertyList(*xml.bytes).value);
    } else {
      EXPECT_EQ(xml.error.code, 3851);
    }
  });
}

TEST_F(HostileInputTest, XML) { readsOrRefuses(*writePropertyList(sample(), xmlFormat).bytes); }

TEST_F(HostileInputTest, Binary) {
  readsOrRefuses(*writePropertyList(sample(), binaryFormat).bytes);
}

TEST_F(HostileInputTest, Text) {
  readsOrRefuses(R"({ a = "b\n\U20ac"; 'c d' = (e, "f", <01 02>, {g = h;}); /* i */ j; // k
})");
}

TEST_F(HostileInputTest, JSON) {
  const std::string document =
      R"({"a": [1, -2.5e3, true, null, "\u20ac\ud83d\ude00 \n"], "b": {"c": {}, "d": [[]]}})";
  forMutationsOf(document, [](const std::string& damaged) {
    const Read read = readJSON(damaged);
    if (!read.value) {
      EXPECT_EQ(read.error.code, 3840);
    }
  });
}

TEST_F(HostileInputTest, URLs) {
  forMutationsOf("app://user:pw@host.example:80/a/b;c?q=1&r=%20#f", [](const std::string& damaged) {
    const std::optional<zib::URL> url = zib::URL::parse(damaged);
    if (!url) return;
    EXPECT_EQ(url->text().utf8(), damaged);
    static_cast<void>(url->queryItems());
  });
}

}  // namespace
