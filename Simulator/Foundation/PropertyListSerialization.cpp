// NSPropertyListSerialization: which form bytes are in, and which objects are property lists.

#include <string>

#include "Simulator/Foundation/BinaryPropertyList.h"
#include "Simulator/Foundation/Budget.h"
#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/Installers.h"
#include "Simulator/Foundation/Serialization.h"
#include "Simulator/Foundation/TextEncoding.h"
#include "Simulator/Foundation/TextPropertyList.h"
#include "Simulator/Foundation/XMLPropertyList.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::isKind;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;
using Bytes = std::span<const std::uint8_t>;

constexpr UInteger textFormat = 1;
constexpr UInteger xmlFormat = 100;
constexpr UInteger binaryFormat = 200;

struct PropertyList {
  zib::Value value;
  UInteger format;
};

std::string_view viewOf(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Bytes withoutLeadingSpace(Bytes bytes) {
  const std::size_t start = viewOf(bytes).find_first_not_of(" \t\r\n");
  return start == std::string_view::npos ? Bytes() : bytes.subspan(start);
}

// Looks past the byte order mark and the NULs of UTF-16.
bool startsLikeXML(Bytes bytes) {
  constexpr std::string_view passedOver("\xEF\xBB\xBF\xFF\xFE \t\r\n\0", 10);
  const std::string_view text = viewOf(bytes);
  const std::size_t start = text.find_first_not_of(passedOver);
  return start != std::string_view::npos && text[start] == '<';
}

PropertyList readText(Bytes bytes) { return {readTextPropertyList(textFrom(bytes)), textFormat}; }

// The text form can start with the same character, as `<0fbd77>`.
PropertyList readXMLOrText(Bytes bytes) {
  try {
    return {readXMLPropertyList(withoutLeadingSpace(bytes)), xmlFormat};
  } catch (const FormatError& xmlError) {
    try {
      return readText(bytes);
    } catch (const FormatError&) {
      throw xmlError;
    }
  }
}

PropertyList readPropertyList(Bytes bytes) {
  if (bytes.empty()) throw FormatError("there are no bytes");
  if (bytes.size() > Budget::maximumBytes) throw FormatError("it holds more than 64 MB");
  if (viewOf(bytes).starts_with(binaryPropertyListMark)) {
    return {readBinaryPropertyList(bytes), binaryFormat};
  }
  return startsLikeXML(bytes) ? readXMLOrText(bytes) : readText(bytes);
}

// Turns objects into a value, and refuses those that are no property list. A container that holds
// itself ends at the limit on nesting.
class Examiner {
 public:
  zib::Value value(id object) {
    budget_.spendValue();
    if (isKind<"NSDictionary">(object)) return dictionary(object);
    if (isKind<"NSArray">(object)) return array(object);
    const bool isScalar = isKind<"NSString">(object) || isKind<"NSData">(object) ||
                          isKind<"NSNumber">(object) || isKind<"NSDate">(object);
    if (!isScalar) throw FormatError("it holds an object that is " + nameOf(object));
    return *zib::valueFrom(object);
  }

 private:
  static std::string nameOf(id object) {
    return object == nullptr ? "nil" : "a " + std::string(zib::Class::ofObject(object).name());
  }

  static std::string text(id string) {
    std::string result = zib::utf8From(string);
    const bool isWhole =
        send<BOOL>(string, selector<"isEqualToString:">(), zib::makeString(result).raw()) != 0;
    if (!isWhole) throw FormatError("a string holds half a character");
    return result;
  }

  zib::Value dictionary(id dictionary) {
    const Nesting nesting(budget_);
    zib::ValueMap result;
    for (const id key : zib::keysOf(dictionary)) {
      if (!isKind<"NSString">(key)) throw FormatError("a key is " + nameOf(key));
      result.append(text(key), value(send<id>(dictionary, selector<"objectForKey:">(), key)));
    }
    return result;
  }

  zib::Value array(id array) {
    const Nesting nesting(budget_);
    zib::Array result;
    for (const id element : zib::elements(array)) result.push_back(value(element));
    return result;
  }

  Budget budget_;
};

zib::Object writePropertyList(const zib::Value& value, UInteger format) {
  if (format == binaryFormat) return zib::makeData(writeBinaryPropertyList(value));
  if (format != xmlFormat) throw FormatError("the format is neither XML nor binary");
  const std::string text = writeXMLPropertyList(value);
  return zib::makeData({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

id propertyListWithData(id, SEL, id data, UInteger /*options*/, UInteger* format, id* error) {
  constexpr const char* problem = "The data is not a property list";
  return madeOrReported(CocoaError::propertyListReadCorrupt, problem, error, [&] {
    const PropertyList list = readPropertyList(zib::bytesOf(data));
    if (format != nullptr) *format = list.format;
    return zib::objectFrom(list.value);
  });
}

id dataWithPropertyList(id, SEL, id list, UInteger format, UInteger /*options*/, id* error) {
  constexpr const char* problem = "The property list cannot be written";
  return madeOrReported(CocoaError::propertyListWriteInvalid, problem, error,
                        [&] { return writePropertyList(Examiner().value(list), format); });
}

}  // namespace

void foundation::installPropertyListSerialization() {
  const zib::Class serialization = zib::Class::named("NSPropertyListSerialization");
  installClassMethod(serialization,
                     "propertyListWithData:options:format:error:", &propertyListWithData);
  installClassMethod(serialization,
                     "dataWithPropertyList:format:options:error:", &dataWithPropertyList);
}

}  // namespace sim
