// Foundation's readers and writers of documents, called as the module calls them.

#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "Simulator/Json/Values.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace serialization {

inline constexpr zib::objc::UInteger textFormat = 1;
inline constexpr zib::objc::UInteger xmlFormat = 100;
inline constexpr zib::objc::UInteger binaryFormat = 200;

struct Read {
  // None when there is an error.
  std::optional<zib::Value> value;
  zib::Error error;
  zib::objc::UInteger format = 0;
};

struct Written {
  std::optional<std::string> bytes;
  zib::Error error;
};

inline zib::Object dataOf(std::string_view bytes) {
  return zib::makeData({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

inline Read outcome(zib::objc::id root, zib::objc::id error) {
  if (root == nullptr) return {std::nullopt, zib::Error::fromNative(error)};
  return {sim::valueOf(root), {}};
}

inline Read readJSON(std::string_view text, zib::objc::UInteger options = 0) {
  zib::objc::id error = nullptr;
  const zib::objc::id root = zib::send<zib::objc::id>(
      zib::classNamed<"NSJSONSerialization">().object(),
      zib::selector<"JSONObjectWithData:options:error:">(), dataOf(text).raw(), options, &error);
  return outcome(root, error);
}

inline Read readPropertyList(std::string_view bytes) {
  zib::objc::id error = nullptr;
  zib::objc::UInteger format = 0;
  const zib::objc::id root =
      zib::send<zib::objc::id>(zib::classNamed<"NSPropertyListSerialization">().object(),
                               zib::selector<"propertyListWithData:options:format:error:">(),
                               dataOf(bytes).raw(), zib::objc::UInteger{0}, &format, &error);
  Read result = outcome(root, error);
  result.format = format;
  return result;
}

inline void expectReadersError(const Read& read, const char* descriptionStart) {
  ASSERT_FALSE(read.value);
  EXPECT_EQ(read.error.domain, "NSCocoaErrorDomain");
  EXPECT_EQ(read.error.code, 3840);
  EXPECT_TRUE(read.error.description.starts_with(descriptionStart));
}

inline Written writePropertyList(zib::objc::id list, zib::objc::UInteger format) {
  zib::objc::id error = nullptr;
  const zib::objc::id data =
      zib::send<zib::objc::id>(zib::classNamed<"NSPropertyListSerialization">().object(),
                               zib::selector<"dataWithPropertyList:format:options:error:">(), list,
                               format, zib::objc::UInteger{0}, &error);
  if (data == nullptr) return {std::nullopt, zib::Error::fromNative(error)};
  const auto bytes = zib::bytesOf(data);
  return {std::string(bytes.begin(), bytes.end()), {}};
}

inline Written writePropertyList(const zib::Value& value, zib::objc::UInteger format) {
  return writePropertyList(zib::objectFrom(value).raw(), format);
}

}  // namespace serialization
