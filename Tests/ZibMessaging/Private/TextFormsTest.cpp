// The forms in which foreign text appears in log lines.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "ZibMessaging/Private/QuotedText.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibPlatform/Foundation/Data.h"

namespace {

using namespace std::string_view_literals;

std::string quoted(std::string_view text) {
  std::string line;
  zib::appendQuoted(line, text);
  return line;
}

TEST(TextFormsTest, ATokenIsCutAfterTwentyCharacters) {
  EXPECT_EQ(zib::shownOf(""), "");
  EXPECT_EQ(zib::shownOf("abcde"), "abcde");
  EXPECT_EQ(zib::shownOf("abcdefghijklmnopqrst"), "abcdefghijklmnopqrst");
  EXPECT_EQ(zib::shownOf("abcdefghijklmnopqrstuvwxyz"), "abcdefghijklmnopqrst");
  EXPECT_EQ(zib::shownOf("ééééééééééééééééééééx"), "éééééééééééééééééééé");
  const std::string manyBytes(64, '\x80');
  EXPECT_EQ(zib::shownOf(manyBytes), std::string(20, '\x80'));
}

TEST(TextFormsTest, ADeviceTokenIsShownAsTheStartOfItsText) {
  EXPECT_EQ(zib::ShownHexText({}).view(), "");
  EXPECT_EQ(zib::ShownHexText(zib::Bytes{0x00, 0x01, 0xAB}).view(), "0001ab");
  EXPECT_EQ(zib::ShownHexText(zib::Bytes(10, 0x5C)).view(), "5c5c5c5c5c5c5c5c5c5c");
  const zib::Bytes token{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x10, 0x32};
  EXPECT_EQ(zib::ShownHexText(token).view(), "0123456789abcdef1032");
  EXPECT_EQ(zib::ShownHexText(zib::Bytes(32, 0xFF)).view(), std::string(20, 'f'));
}

TEST(TextFormsTest, TextThatIsPlainIsOneLine) {
  for (const std::string_view text : {""sv, "a"sv, "https://example.com/?a=b~"sv, "\\ \" '"sv}) {
    EXPECT_TRUE(zib::isOneLine(text)) << text;
    std::string line;
    zib::appendOneLine(line, text);
    EXPECT_EQ(line, text);
  }
}

TEST(TextFormsTest, AControlAnywhereInATextIsSeenAndEscaped) {
  constexpr std::pair<std::string_view, std::string_view> controls[] = {
      {"\n", "\\n"},         {"\r", "\\r"},           {"\t", "\\t"},
      {"\0"sv, "\\0"},       {"\x1F", "\\u{1F}"},     {"\x7F", "\\u{7F}"},
      {"\u0085", "\\u{85}"}, {"\u2028", "\\u{2028}"}, {"\u2029", "\\u{2029}"}};
  for (const auto& [control, form] : controls) {
    for (std::size_t before = 0; before < 17; ++before) {
      const std::string start(before, 'a');
      const std::string text = start + std::string(control) + "é";
      EXPECT_FALSE(zib::isOneLine(start + std::string(control)));
      std::string line;
      zib::appendOneLine(line, text);
      EXPECT_EQ(line, start + std::string(form) + "é");
    }
  }
}

TEST(TextFormsTest, EachByteOfADeviceTokenIsTwoLowercaseHexadecimalDigits) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    std::array<char, 3> digits{};
    std::snprintf(digits.data(), digits.size(), "%02x", byte);
    for (std::size_t before = 0; before < 10; ++before) {
      zib::Bytes token(before, 0xA5);
      token.push_back(static_cast<std::uint8_t>(byte));
      EXPECT_EQ(zib::ShownHexText(token).view().substr(2 * before), digits.data());
    }
  }
}

TEST(TextFormsTest, QuotedTextStaysOneLine) {
  EXPECT_EQ(quoted(""), "\"\"");
  EXPECT_EQ(quoted("plain é"), "\"plain é\"");
  EXPECT_EQ(quoted("a\"b\\c"), R"("a\"b\\c")");
  EXPECT_EQ(quoted("\n\r\t\0"sv), R"("\n\r\t\0")");
  EXPECT_EQ(quoted("\x01\x1F\x7F"), R"("\u{01}\u{1F}\u{7F}")");
  EXPECT_EQ(quoted("\u0080 \u0085 \u009F \u00A0"), "\"\\u{80} \\u{85} \\u{9F} \u00A0\"");
  EXPECT_EQ(quoted("\u2027\u2028\u2029\u202A"), "\"\u2027\\u{2028}\\u{2029}\u202A\"");
  EXPECT_EQ(quoted("\xC2\xFF\xE2\x80"), "\"\xC2\xFF\xE2\x80\"");
}

}  // namespace
