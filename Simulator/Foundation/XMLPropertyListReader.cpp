#include <expat.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Simulator/Foundation/Base64.h"
#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/GregorianTime.h"
#include "Simulator/Foundation/ValueBuilder.h"
#include "Simulator/Foundation/XMLPropertyList.h"

namespace sim {
namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

bool isBlank(std::string_view text) {
  return text.find_first_not_of(whiteSpace) == std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
  if (isBlank(text)) return {};
  const std::size_t start = text.find_first_not_of(whiteSpace);
  return text.substr(start, text.find_last_not_of(whiteSpace) + 1 - start);
}

[[noreturn]] void refuse(const char* element, std::string_view text) {
  throw FormatError(std::string("<") + element + "> holds \"" + std::string(text.substr(0, 40)) +
                    "\"");
}

template <class Number, class... Format>
std::optional<Number> whole(std::string_view text, Format... format) {
  Number number{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number, format...);
  const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size();
  return isNumber ? std::optional(number) : std::nullopt;
}

// Takes a sign off the front; says whether it is a minus.
bool takeSign(std::string_view& digits) {
  const bool isNegative = digits.starts_with('-');
  if (isNegative || digits.starts_with('+')) digits.remove_prefix(1);
  return isNegative;
}

zib::Value integerFrom(const std::string& text) {
  std::string_view digits = trimmed(text);
  const bool isNegative = takeSign(digits);
  const bool isHexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
  if (isHexadecimal) digits.remove_prefix(2);
  const auto magnitude = whole<std::uint64_t>(digits, isHexadecimal ? 16 : 10);
  if (!magnitude) refuse("integer", text);
  if (!isNegative) return *magnitude;
  constexpr auto most = std::uint64_t{1} << 63U;
  if (*magnitude > most) refuse("integer", text);
  return static_cast<std::int64_t>(0U - *magnitude);
}

zib::Value realFrom(const std::string& text) {
  std::string digits(trimmed(text));
  std::transform(digits.begin(), digits.end(), digits.begin(),
                 [](unsigned char digit) { return static_cast<char>(std::tolower(digit)); });
  std::string_view unsignedDigits = digits;
  const bool isNegative = takeSign(unsignedDigits);
  // "nan", "inf" and "infinity" are numbers here, as they are on the platform.
  const auto number = whole<double>(unsignedDigits);
  if (!number || unsignedDigits.starts_with('-') ||
      unsignedDigits.find('(') != std::string_view::npos) {
    refuse("real", text);
  }
  return isNegative ? -*number : *number;
}

zib::Value booleanFrom(const std::string& text, bool value) {
  if (!isBlank(text)) refuse(value ? "true" : "false", text);
  return value;
}

zib::Value dateFrom(const std::string& text) {
  const auto seconds = secondsFrom(trimmed(text));
  if (!seconds) refuse("date", text);
  return zib::Date{*seconds};
}

zib::Value dataFrom(const std::string& text) {
  auto bytes = bytesFromBase64(text);
  if (!bytes) refuse("data", text);
  return std::move(*bytes);
}

// An element that holds text, and what it stands for. `<key>` is the one that is no value.
struct Leaf {
  std::string_view name;
  zib::Value (*value)(std::string& text);
};

constexpr Leaf leaves[] = {
    {"key", nullptr},
    {"string", [](std::string& text) { return zib::Value(std::move(text)); }},
    {"integer", [](std::string& text) { return integerFrom(text); }},
    {"real", [](std::string& text) { return realFrom(text); }},
    {"true", [](std::string& text) { return booleanFrom(text, true); }},
    {"false", [](std::string& text) { return booleanFrom(text, false); }},
    {"date", [](std::string& text) { return dateFrom(text); }},
    {"data", [](std::string& text) { return dataFrom(text); }},
};

const Leaf* leafNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(leaves), std::end(leaves),
                                   [&](const Leaf& leaf) { return leaf.name == name; });
  return found == std::end(leaves) ? nullptr : found;
}

using Parser = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;

class XMLReader {
 public:
  XMLReader() : parser_(XML_ParserCreate(nullptr), &XML_ParserFree) {
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(
        parser_.get(),
        [](void* self, const char* name, const char**) {
          static_cast<XMLReader*>(self)->handle([&](XMLReader& reader) { reader.start(name); });
        },
        [](void* self, const char* name) {
          static_cast<XMLReader*>(self)->handle([&](XMLReader& reader) { reader.end(name); });
        });
    XML_SetCharacterDataHandler(parser_.get(), [](void* self, const char* text, int length) {
      static_cast<XMLReader*>(self)->handle([&](XMLReader& reader) {
        reader.characters({text, static_cast<std::size_t>(length)});
      });
    });
    // A document type allows entities that are declared elsewhere, and then the parser passes over
    // those that it does not know.
    XML_SetSkippedEntityHandler(parser_.get(), [](void* self, const char* name, int) {
      static_cast<XMLReader*>(self)->handle([&](XMLReader&) {
        throw FormatError("the entity " + std::string(name) + " is unknown");
      });
    });
    XML_SetEntityDeclHandler(parser_.get(), [](void* self, const char*, int, const char*, int,
                                               const char*, const char*, const char*, const char*) {
      static_cast<XMLReader*>(self)->handle(
          [](XMLReader&) { throw FormatError("a property list declares no entities"); });
    });
  }

  zib::Value read(std::span<const std::uint8_t> bytes) {
    const auto status = XML_Parse(parser_.get(), reinterpret_cast<const char*>(bytes.data()),
                                  static_cast<int>(bytes.size()), XML_TRUE);
    if (failure_) std::rethrow_exception(failure_);
    if (status != XML_STATUS_OK) {
      throw FormatError(atLine(XML_ErrorString(XML_GetErrorCode(parser_.get()))));
    }
    return *builder_.take();
  }

 private:
  // No exception may pass through the parser, which is C.
  template <class Work>
  void handle(Work work) {
    if (failure_) return;
    try {
      work(*this);
    } catch (const FormatError& error) {
      failure_ = std::make_exception_ptr(FormatError(atLine(error.what())));
    } catch (...) {
      failure_ = std::current_exception();
    }
    if (failure_) XML_StopParser(parser_.get(), XML_FALSE);
  }

  [[nodiscard]] std::string atLine(const char* what) const {
    return std::string(what) + " (line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())) +
           ")";
  }

  void start(std::string_view name) {
    if (leaf_ != nullptr) {
      throw FormatError("<" + std::string(leaf_->name) + "> holds an element");
    }
    const bool isRoot = std::exchange(isAtRoot_, false);
    leaf_ = leafNamed(name);
    if (leaf_ != nullptr) return;
    if (name == "array") {
      builder_.beginArray();
    } else if (name == "dict") {
      builder_.beginDictionary();
    } else if (name != "plist" || !isRoot) {
      throw FormatError("the element <" + std::string(name.substr(0, 40)) + "> is unknown here");
    }
  }

  void end(std::string_view name) {
    if (leaf_ != nullptr) {
      endLeaf();
    } else if (name != "plist") {
      builder_.end();
    } else if (builder_.isEmpty()) {
      throw FormatError("<plist> holds no value");
    }
  }

  void endLeaf() {
    const Leaf& leaf = *std::exchange(leaf_, nullptr);
    std::string text = std::exchange(text_, {});
    if (leaf.value == nullptr) {
      builder_.key(std::move(text));
    } else {
      builder_.add(leaf.value(text));
    }
  }

  void characters(std::string_view text) {
    if (leaf_ != nullptr) {
      text_ += text;
    } else if (!isBlank(text)) {
      throw FormatError("there is text between the elements");
    }
  }

  Parser parser_;
  ValueBuilder builder_;
  bool isAtRoot_ = true;
  const Leaf* leaf_ = nullptr;
  std::string text_;
  std::exception_ptr failure_;
};

}  // namespace

zib::Value readXMLPropertyList(std::span<const std::uint8_t> bytes) {
  return XMLReader().read(bytes);
}

}  // namespace sim
