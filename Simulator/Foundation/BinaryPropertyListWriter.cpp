#include <algorithm>
#include <bit>
#include <iterator>
#include <string>
#include <variant>
#include <vector>

#include "Simulator/Foundation/BinaryPropertyList.h"
#include "Simulator/Foundation/BinaryPropertyListFormat.h"
#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/GregorianTime.h"
#include "Simulator/Foundation/TextEncoding.h"

namespace sim {
namespace {

bool isASCII(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

// How many objects a value is in this form; keys are objects too.
std::size_t objectCount(const zib::Value& value) {
  std::size_t count = 1;
  if (const auto* array = value.get<zib::Array>()) {
    for (const zib::Value& member : *array) count += objectCount(member);
  } else if (const auto* map = value.get<zib::ValueMap>()) {
    for (const zib::Member& member : *map) count += 1 + objectCount(member.value);
  }
  return count;
}

// The least number of bytes that hold all numbers up to this one.
std::size_t bytesFor(std::uint64_t greatest) {
  std::size_t count = 1;
  while (greatest > 0xFFU) {
    greatest >>= 8U;
    ++count;
  }
  return count;
}

class BinaryWriter {
 public:
  zib::Bytes write(const zib::Value& value) {
    append(bplist::header);
    const std::size_t count = objectCount(value);
    offsets_.reserve(count);
    referenceSize_ = bytesFor(count - 1);
    put(value);
    finish();
    return std::move(out_);
  }

  // One overload for each alternative of a value.
  void operator()(zib::Null) { throw FormatError("a property list holds no null marker"); }
  void operator()(bool value) { appendNumber(value ? bplist::trueMarker : bplist::falseMarker, 1); }
  void operator()(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    // Shorter integers have no sign.
    unsigned exponent = 0;
    while (exponent < 3 && (bits >> (8U << exponent)) != 0) ++exponent;
    appendMarker(bplist::kind::integer, exponent);
    appendNumber(bits, std::size_t{1} << exponent);
  }
  void operator()(std::uint64_t value) {
    appendMarker(bplist::kind::integer, 4);
    appendNumber(0, 8);
    appendNumber(value, 8);
  }
  void operator()(double value) {
    appendMarker(bplist::kind::real, 3);
    appendNumber(std::bit_cast<std::uint64_t>(value), 8);
  }
  void operator()(const std::string& value) {
    if (isASCII(value)) {
      appendLength(bplist::kind::asciiString, value.size());
      append(value);
    } else {
      const std::string units = utf16BigFrom(value);
      appendLength(bplist::kind::utf16String, units.size() / 2);
      append(units);
    }
  }
  void operator()(const zib::Bytes& value) {
    appendLength(bplist::kind::data, value.size());
    std::copy(value.begin(), value.end(), std::back_inserter(out_));
  }
  void operator()(zib::Date value) {
    appendMarker(bplist::kind::date, 3);
    appendNumber(std::bit_cast<std::uint64_t>(value.secondsSince1970 - referenceDate), 8);
  }
  void operator()(const zib::Array& value) {
    appendLength(bplist::kind::array, value.size());
    const std::size_t references = reserveReferences(value.size());
    for (std::size_t index = 0; index < value.size(); ++index) {
      putReferred(value[index], references, index);
    }
  }
  void operator()(const zib::ValueMap& value) {
    appendLength(bplist::kind::dictionary, value.size());
    const std::size_t references = reserveReferences(value.size() * 2);
    std::size_t index = 0;
    for (const zib::Member& member : value) {
      putReferred(member.key, references, index);
      putReferred(member.value, references, value.size() + index);
      ++index;
    }
  }

 private:
  void put(const zib::Value& value) {
    offsets_.push_back(out_.size());
    value.visit(*this);
  }

  // Writes the next object, and its number into the place that is reserved for it.
  void putReferred(const zib::Value& value, std::size_t references, std::size_t index) {
    const std::size_t number = offsets_.size();
    const std::size_t place = references + index * referenceSize_;
    for (std::size_t at = 0; at < referenceSize_; ++at) {
      out_[place + at] = static_cast<std::uint8_t>(number >> (8 * (referenceSize_ - 1 - at)));
    }
    put(value);
  }

  std::size_t reserveReferences(std::size_t count) {
    const std::size_t place = out_.size();
    out_.resize(place + count * referenceSize_);
    return place;
  }

  void finish() {
    const std::size_t table = out_.size();
    const std::size_t offsetSize = bytesFor(table);
    for (const std::size_t offset : offsets_) appendNumber(offset, offsetSize);
    appendNumber(0, 6);
    appendNumber(offsetSize, 1);
    appendNumber(referenceSize_, 1);
    appendNumber(offsets_.size(), 8);
    appendNumber(0, 8);
    appendNumber(table, 8);
  }

  void append(std::string_view bytes) {
    std::copy(bytes.begin(), bytes.end(), std::back_inserter(out_));
  }

  void appendNumber(std::uint64_t number, std::size_t size) {
    for (std::size_t shift = size * 8; shift > 0; shift -= 8) {
      out_.push_back(static_cast<std::uint8_t>(number >> (shift - 8)));
    }
  }

  void appendMarker(unsigned kind, unsigned low) { appendNumber(kind << 4U | low, 1); }

  void appendLength(unsigned kind, std::size_t length) {
    if (length < bplist::lengthFollows) return appendMarker(kind, static_cast<unsigned>(length));
    appendMarker(kind, bplist::lengthFollows);
    (*this)(static_cast<std::int64_t>(length));
  }

  zib::Bytes out_;
  std::vector<std::size_t> offsets_;
  std::size_t referenceSize_ = 1;
};

}  // namespace

zib::Bytes writeBinaryPropertyList(const zib::Value& value) { return BinaryWriter().write(value); }

}  // namespace sim
