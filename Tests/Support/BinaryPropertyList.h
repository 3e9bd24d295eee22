// A binary property list from its parts, right or wrong.

#pragma once

#include <cstdint>
#include <string>
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

// A few hundred bytes that stand for 2^59 objects: each of its arrays names the next one twice.
inline BinaryPropertyList doublingReferences() {
  BinaryPropertyList list;
  for (char level = 1; level < 60; ++level) list.objects.push_back({'\xA2', level, level});
  list.objects.emplace_back("\x09");
  return list;
}

}  // namespace test
