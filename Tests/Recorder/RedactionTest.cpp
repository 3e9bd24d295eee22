#include "Recorder/Redaction.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/URL.h"

namespace {

using zib::recorder::Redaction;

std::string redactedText(std::string_view text) { return Redaction().text(text); }

TEST(RedactionTest, LeavesNothingOfWhatATextSays) {
  EXPECT_EQ(redactedText("Dear Zoë, 20% off!"), "Aaax Xxé, 00% xaa!");
  EXPECT_EQ(redactedText("00fA19"), "00aA00");
  EXPECT_EQ(redactedText(""), "");
  EXPECT_EQ(redactedText("/Zo%C3%ab%41"), "/Xx%A0%aa%41");
}

TEST(RedactionTest, LeavesWhatTheModuleDecidesBy) {
  EXPECT_EQ(redactedText("NA"), "NA");
  EXPECT_EQ(redactedText("Na"), "Xa");
  EXPECT_EQ(redactedText("PUSH-NOTIFICATION-SEND-TEST"), "PUSH-NOTIFICATION-SEND-TEST");
}

TEST(RedactionTest, LeavesEscapesOfPunctuation) {
  EXPECT_EQ(redactedText("?ids%5B%5d=7%20"), "?xax%5B%5d=0%20");
}

TEST(RedactionTest, KeepsTheSameTextsTheSame) {
  Redaction redaction;
  const std::string first = redaction.text("https://one.example/a");
  EXPECT_NE(redaction.text("https://two.example/a"), first);
  EXPECT_EQ(redaction.text("https://one.example/a"), first);
  EXPECT_EQ(Redaction().text("https://one.example/a"), first);
}

TEST(RedactionTest, KeepsDifferentTextsDifferent) {
  Redaction redaction;
  EXPECT_EQ(redaction.text("https://a.example/x"), "https://a.axaxxxa/x");
  EXPECT_EQ(redaction.text("https://b.example/y"), "https://b.axaxxxa/y");
  EXPECT_EQ(redaction.text("https://c.example/x"), "https://c.axaxxxa/x");
  EXPECT_EQ(redaction.text("Zoë"), "Xxé");
  EXPECT_EQ(redaction.text("Zoé"), "Xxê");
}

// Hosts are compared without capitals.
TEST(RedactionTest, KeepsTextsTheSameButForCapitals) {
  Redaction redaction;
  EXPECT_EQ(redaction.text("Shop.example"), "Xxxx.axaxxxa");
  EXPECT_EQ(redaction.text("shop.EXAMPLE"), "xxxx.AXAXXXA");
  EXPECT_EQ(redaction.text("Post.example"), "Xxxy.axaxxxa");
}

TEST(RedactionTest, MakesNoTextThatTheModuleKnows) {
  Redaction redaction;
  for (char first = 'G'; first <= 'Z'; ++first) {
    for (char second = 'A'; second <= 'F'; ++second) {
      if (std::string text{first, second}; text != "NA") {
        EXPECT_NE(redaction.text(text), "NA") << text;
      }
    }
  }
}

// More than there are of their kind, and with all that has a kind of its own.
TEST(RedactionTest, KeepsRandomTextsApart) {
  std::mt19937 random(1);
  const std::vector<std::string> pieces{"0",  "7",   "a",   "F",   "g",   "Z",   "é",   "ж", "%",
                                        "%4", "%2F", "%41", "%5a", "%C3", "%a9", "%8B", "N", "-"};
  Redaction redaction;
  std::map<std::string, std::string> originals;
  for (int count = 0; count < 20000; ++count) {
    std::string text;
    for (std::size_t length = random() % 5; length > 0; --length) {
      text += pieces[random() % pieces.size()];
    }
    const auto [known, isNew] = originals.emplace(redaction.text(text), text);
    EXPECT_EQ(known->second, text) << known->first;
  }
}

TEST(RedactionTest, ComesToRestAtOnce) {
  Redaction once;
  Redaction twice;
  for (const char* const text : {"Dear Zoë, 20% off!", "https://shop.example/a?b=%C3%A9#z",
                                 "https://post.example/", "a:b", ":"}) {
    const std::string redacted = once.text(text);
    EXPECT_EQ(twice.text(redacted), redacted) << text;
  }
}

TEST(RedactionTest, KeepsKeysNumbersAndShape) {
  const zib::Value payload = zib::ValueMap{
      {"id", 4711},
      {"list", zib::Array{"ab", true, zib::Null()}},
      {"data", zib::Array{zib::Bytes{1, 2}, zib::Bytes{3, 4}, zib::Bytes{1, 2}, zib::Bytes{1}}}};
  const zib::Value expected = zib::ValueMap{
      {"id", 4711},
      {"list", zib::Array{"aa", true, zib::Null()}},
      {"data", zib::Array{zib::Bytes{0, 0}, zib::Bytes{0, 1}, zib::Bytes{0, 0}, zib::Bytes{0}}}};
  EXPECT_EQ(Redaction().value(payload), expected);
}

class RedactedURLTest : public test::FoundationTest {};

TEST_F(RedactedURLTest, IsOneWhereItWasOne) {
  for (const char* const url :
       {"https://shop.example:8080/a%20b?utm_source=mail&ids=%5B1%5D#end",
        "shop-app+x://[fe80::1]/", "mailto:somebody@shop.example", "/sale"}) {
    EXPECT_TRUE(zib::URL::parse(url)) << url;
    EXPECT_TRUE(zib::URL::parse(redactedText(url))) << redactedText(url);
  }
  for (const char* const text : {"https://shop.example/summer sale", "https://shop.example/%zz"}) {
    EXPECT_FALSE(zib::URL::parse(text)) << text;
    EXPECT_FALSE(zib::URL::parse(redactedText(text))) << redactedText(text);
  }
  EXPECT_TRUE(redactedText("https://shop.example/").starts_with("https://xxxx."));
}

}  // namespace
