#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <variant>
#include <vector>

#include "Simulator/Foundation/Base64.h"
#include "Simulator/Foundation/Budget.h"
#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/GregorianTime.h"
#include "Simulator/Foundation/XMLPropertyList.h"

namespace sim {
namespace {

constexpr std::string_view head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view tail = "</plist>\n";
constexpr std::size_t dataLineLength = 76;

// A line feed would be all that a reader sees of a carriage return that stands for itself.
std::string_view escapeOf(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

// U+FFFE and U+FFFF, the only ones that XML forbids beyond the controls.
bool startsWithNoncharacter(std::string_view utf8) {
  return utf8.starts_with("\xEF\xBF\xBE") || utf8.starts_with("\xEF\xBF\xBF");
}

bool isForbiddenControl(char character) {
  return static_cast<unsigned char>(character) < 0x20 && character != '\t' && character != '\n' &&
         character != '\r';
}

std::string escaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isForbiddenControl(text[at]) || startsWithNoncharacter(text.substr(at))) {
      throw FormatError("a string holds a character that XML cannot hold");
    }
    const std::string_view escape = escapeOf(text[at]);
    if (escape.empty()) {
      result.push_back(text[at]);
    } else {
      result += escape;
    }
  }
  return result;
}

template <class Number>
std::string decimal(Number number) {
  std::array<char, 32> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), result.ptr};
}

std::string real(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number < 0 ? "-infinity" : "+infinity";
  return decimal(number);
}

std::vector<const zib::Member*> sortedMembers(const zib::ValueMap& map) {
  std::vector<const zib::Member*> members;
  members.reserve(map.size());
  for (const zib::Member& member : map) members.push_back(&member);
  std::sort(members.begin(), members.end(),
            [](const zib::Member* one, const zib::Member* other) { return one->key < other->key; });
  return members;
}

class XMLWriter {
 public:
  std::string write(const zib::Value& value) {
    out_ += head;
    put(value);
    out_ += tail;
    return std::move(out_);
  }

  // One overload for each alternative of a value.
  void operator()(zib::Null) { throw FormatError("a property list holds no null marker"); }
  void operator()(bool value) { line(value ? "<true/>" : "<false/>"); }
  void operator()(std::int64_t value) { element("integer", decimal(value)); }
  void operator()(std::uint64_t value) { element("integer", decimal(value)); }
  void operator()(double value) { element("real", real(value)); }
  void operator()(const std::string& value) { element("string", escaped(value)); }
  void operator()(const zib::Bytes& value) {
    line("<data>");
    const std::string text = base64From(value);
    for (std::size_t at = 0; at < text.size(); at += dataLineLength) {
      line(std::string_view(text).substr(at, dataLineLength));
    }
    line("</data>");
  }
  void operator()(zib::Date value) {
    const auto text = internetDateTime(value.secondsSince1970);
    if (!text) throw FormatError("a date lies beyond the calendar");
    element("date", *text);
  }
  void operator()(const zib::Array& value) {
    container("array", value.empty(), [&] {
      for (const zib::Value& member : value) put(member);
    });
  }
  void operator()(const zib::ValueMap& value) {
    container("dict", value.empty(), [&] {
      for (const zib::Member* member : sortedMembers(value)) {
        element("key", escaped(member->key));
        put(member->value);
      }
    });
  }

 private:
  void put(const zib::Value& value) { value.visit(*this); }

  void line(std::string_view text) {
    budget_.spendBytes(indentation_ + text.size() + 1);
    out_.append(indentation_, '\t').append(text).append("\n");
  }

  void element(const std::string& name, const std::string& content) {
    line("<" + name + ">" + content + "</" + name + ">");
  }

  template <class Content>
  void container(const std::string& name, bool isEmpty, Content content) {
    if (isEmpty) return line("<" + name + "/>");
    line("<" + name + ">");
    ++indentation_;
    content();
    --indentation_;
    line("</" + name + ">");
  }

  Budget budget_;
  std::string out_;
  std::size_t indentation_ = 0;
};

}  // namespace

std::string writeXMLPropertyList(const zib::Value& value) { return XMLWriter().write(value); }

}  // namespace sim
