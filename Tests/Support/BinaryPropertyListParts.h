// A binary property list from its parts, right or wrong.

#pragma once

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace test {

// `value` in so many bytes, the most significant one first.
inline std::string bigEndian(std::uint64_t value, unsigned size) {
  std::string bytes;
  for (unsigned left = size; left > 0; --left) {
    bytes += static_cast<char>(value >> (8U * (left - 1)));
  }
  return bytes;
}

struct BinaryPropertyList {
  // As their bytes stand in the file.
  std::vector<std::string> objects;
  std::uint64_t top = 0;
  unsigned referenceSize = 1;

  [[nodiscard]] std::string bytes() const {
    constexpr unsigned offsetSize = 4;
    std::string result = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
      table += bigEndian(result.size(), offsetSize);
      result += object;
    }
    const std::string trailer = std::string(6, '\0') + static_cast<char>(offsetSize) +
                                static_cast<char>(referenceSize) + bigEndian(objects.size(), 8) +
                                bigEndian(top, 8) + bigEndian(result.size(), 8);
    return result + table + trailer;
  }
};

// The bytes of one object.
namespace binary {

enum class Kind : std::uint8_t {
  constant = 0x0,
  integer = 0x1,
  real = 0x2,
  date = 0x3,
  data = 0x4,
  text = 0x5,
  wideText = 0x6,
  uid = 0x8,
  array = 0xA,
  set = 0xC,
  dictionary = 0xD,
};

// The head, whose lower half says how long the object is or which of its kind, and what follows.
inline std::string object(Kind kind, unsigned lowerHalf, std::string_view rest = {}) {
  return static_cast<char>(static_cast<unsigned>(kind) << 4U | lowerHalf) + std::string(rest);
}

// An integer of 2^`sizeLog` bytes.
inline std::string integer(std::uint64_t value, unsigned sizeLog = 0) {
  return object(Kind::integer, sizeLog, bigEndian(value, 1U << sizeLog));
}

// An object with a length that stands in an integer behind the head.
inline std::string longObject(Kind kind, std::uint64_t length, unsigned sizeLog,
                              std::string_view rest = {}) {
  constexpr unsigned lengthFollows = 0xF;
  return object(kind, lengthFollows, integer(length, sizeLog) + std::string(rest));
}

inline std::string no() { return object(Kind::constant, 8); }
inline std::string yes() { return object(Kind::constant, 9); }
inline std::string real(float value) {
  return object(Kind::real, 2, bigEndian(std::bit_cast<std::uint32_t>(value), 4));
}
// Seconds since 2001.
inline std::string date(double seconds) {
  return object(Kind::date, 3, bigEndian(std::bit_cast<std::uint64_t>(seconds), 8));
}
// Of less than 15 bytes, as all below.
inline std::string data(std::string_view bytes) {
  return object(Kind::data, static_cast<unsigned>(bytes.size()), bytes);
}
inline std::string text(std::string_view ascii) {
  return object(Kind::text, static_cast<unsigned>(ascii.size()), ascii);
}
inline std::string wideText(std::u16string_view units) {
  std::string bytes;
  for (const char16_t unit : units) bytes += bigEndian(unit, 2);
  return object(Kind::wideText, static_cast<unsigned>(units.size()), bytes);
}

using References = std::initializer_list<std::uint64_t>;

inline std::string array(References elements, unsigned referenceSize = 1) {
  std::string bytes;
  for (const auto element : elements) bytes += bigEndian(element, referenceSize);
  return object(Kind::array, static_cast<unsigned>(elements.size()), bytes);
}
inline std::string dictionary(References keys, References values, unsigned referenceSize = 1) {
  std::string bytes;
  for (const auto key : keys) bytes += bigEndian(key, referenceSize);
  for (const auto value : values) bytes += bigEndian(value, referenceSize);
  return object(Kind::dictionary, static_cast<unsigned>(keys.size()), bytes);
}

}  // namespace binary

// A few hundred bytes that stand for 2^59 objects: each of its arrays names the next one twice.
inline BinaryPropertyList doublingReferences() {
  BinaryPropertyList list;
  for (unsigned level = 1; level < 60; ++level) {
    list.objects.push_back(binary::array({level, level}));
  }
  list.objects.push_back(binary::yes());
  return list;
}

}  // namespace test
