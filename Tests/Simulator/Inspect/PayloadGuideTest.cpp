// The tables of docs/payload.md are the module's. With ZIB_WRITE_DOCUMENTATION in the environment,
// they are written instead of compared.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "ZibMessaging/Private/LinkSearch.h"
#include "ZibMessaging/Private/NotificationEvent.h"

namespace {

using From = zib::NotificationField::From;

std::string code(std::string_view text) { return "`" + std::string(text) + "`"; }

std::string sourceOf(const zib::NotificationField& field) {
  switch (field.from) {
    case From::userInfo:
      return "the text under " + code(field.source.text) + ", else `null`";
    case From::constant:
      return "always \"" + std::string(field.constant.text) + "\"";
    case From::eventType:
      return "what happened";
    case From::nothing:
      return "always `null`";
  }
  return {};
}

std::string fieldTable() {
  std::string table = "| | field | value |\n|---|---|---|\n";
  int number = 0;
  for (const zib::NotificationField& field : zib::notificationFields) {
    table += "| " + std::to_string(++number) + " | " + code(field.key) + " | " + sourceOf(field) +
             " |\n";
  }
  return table;
}

std::string linkTable() {
  std::string table = "| | key |\n|---|---|\n";
  int number = 0;
  for (const zib::ConstantString& key : zib::linkKeys) {
    table += "| " + std::to_string(++number) + " | " + code(key.text) + " |\n";
  }
  return table;
}

std::string testParagraph() {
  return "With " + code(zib::notificationTypeKey.text) + " set to " +
         code(zib::testNotificationType) +
         ", letter by letter, nothing is reported. The notification\n"
         "is shown, the app is told, and a tap opens the link all the same.\n";
}

std::string contentsOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void replaceBetween(std::string& text, const std::string& name, const std::string& content) {
  const std::string start = "<!-- " + name + " -->\n";
  const std::size_t from = text.find(start) + start.size();
  text.replace(from, text.find("<!-- end -->", from) - from, content);
}

TEST(PayloadGuideTest, HoldsTheTablesOfTheModule) {
  const std::string file = ZIBSIM_PAYLOAD_GUIDE;
  const std::string present = contentsOf(file);
  std::string wanted = present;
  replaceBetween(wanted, "fields", fieldTable());
  replaceBetween(wanted, "links", linkTable());
  replaceBetween(wanted, "test", testParagraph());
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread
  if (std::getenv("ZIB_WRITE_DOCUMENTATION") != nullptr) {
    std::ofstream(file, std::ios::binary) << wanted;
  } else {
    EXPECT_EQ(present, wanted);
  }
}

}  // namespace
