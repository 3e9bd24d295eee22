#include <bit>
#include <cmath>
#include <string>
#include <utility>

#include "Simulator/Foundation/BinaryPropertyList.h"
#include "Simulator/Foundation/BinaryPropertyListFormat.h"
#include "Simulator/Foundation/Budget.h"
#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/GregorianTime.h"
#include "Simulator/Foundation/SortedMembers.h"
#include "Simulator/Foundation/TextEncoding.h"

namespace sim {
namespace {

using Bytes = std::span<const std::uint8_t>;

std::uint64_t bigEndian(Bytes bytes) {
  std::uint64_t number = 0;
  for (const std::uint8_t byte : bytes) number = number << 8U | byte;
  return number;
}

// Bytes that are consumed from the front.
class Cursor {
 public:
  explicit Cursor(Bytes rest) : rest_(rest) {}

  // `count` units of `size` bytes, none of which is 0.
  Bytes take(std::uint64_t count, std::size_t size = 1) {
    if (count > rest_.size() / size) throw FormatError("an object reaches beyond the end");
    const std::size_t length = static_cast<std::size_t>(count) * size;
    const Bytes taken = rest_.first(length);
    rest_ = rest_.subspan(length);
    return taken;
  }
  unsigned takeByte() { return take(1)[0]; }

 private:
  Bytes rest_;
};

struct Trailer {
  std::size_t offsetSize;
  std::size_t referenceSize;
  std::uint64_t objectCount;
  std::uint64_t topObject;
  std::uint64_t offsetTable;
};

bool isIntegerSize(std::size_t size) { return size >= 1 && size <= 8; }

Trailer trailerOf(Bytes bytes) {
  if (bytes.size() < bplist::header.size() + bplist::trailerSize) {
    throw FormatError("the binary form is cut short");
  }
  Cursor cursor(bytes.last(bplist::trailerSize));
  cursor.take(6);
  Trailer trailer{};
  trailer.offsetSize = cursor.takeByte();
  trailer.referenceSize = cursor.takeByte();
  trailer.objectCount = bigEndian(cursor.take(8));
  trailer.topObject = bigEndian(cursor.take(8));
  trailer.offsetTable = bigEndian(cursor.take(8));
  return trailer;
}

class BinaryReader {
 public:
  explicit BinaryReader(Bytes bytes)
      : trailer_(trailerOf(bytes)), content_(bytes.first(bytes.size() - bplist::trailerSize)) {
    const bool isSound =
        isIntegerSize(trailer_.offsetSize) && isIntegerSize(trailer_.referenceSize) &&
        trailer_.offsetTable >= bplist::header.size() && trailer_.offsetTable <= content_.size();
    if (!isSound) throw FormatError("the binary form's trailer is wrong");
    Cursor table(content_.subspan(static_cast<std::size_t>(trailer_.offsetTable)));
    offsets_ = table.take(trailer_.objectCount, trailer_.offsetSize);
    content_ = content_.first(static_cast<std::size_t>(trailer_.offsetTable));
  }

  zib::Value read() { return object(trailer_.topObject); }

 private:
  // The bytes from the object's first to the end of all objects.
  [[nodiscard]] Bytes bytesOf(std::uint64_t reference) const {
    if (reference >= trailer_.objectCount) throw FormatError("a reference has no object");
    const std::size_t place = static_cast<std::size_t>(reference) * trailer_.offsetSize;
    const std::uint64_t offset = bigEndian(offsets_.subspan(place, trailer_.offsetSize));
    if (offset < bplist::header.size() || offset >= content_.size()) {
      throw FormatError("an object lies outside of the document");
    }
    return content_.subspan(static_cast<std::size_t>(offset));
  }

  static std::uint64_t length(unsigned low, Cursor& cursor) {
    if (low != bplist::lengthFollows) return low;
    const unsigned marker = cursor.takeByte();
    const unsigned exponent = marker & 0xFU;
    if (marker >> 4U != bplist::kind::integer || exponent > 3) {
      throw FormatError("an object's length is wrong");
    }
    return bigEndian(cursor.take(std::uint64_t{1} << exponent));
  }

  // References to itself end at the limit on nesting, and the values that each reference stands for
  // are counted anew.
  zib::Value object(std::uint64_t reference) {
    budget_.spendValue();
    Cursor cursor(bytesOf(reference));
    const unsigned marker = cursor.takeByte();
    const unsigned low = marker & 0xFU;
    switch (marker >> 4U) {
      case bplist::kind::simple:
        return simple(marker);
      case bplist::kind::integer:
        return integer(low, cursor);
      case bplist::kind::real:
        return real(low, cursor);
      case bplist::kind::date:
        return date(low, cursor);
      case bplist::kind::data: {
        const Bytes bytes = spent(cursor.take(length(low, cursor)));
        return zib::Bytes(bytes.begin(), bytes.end());
      }
      case bplist::kind::asciiString:
      case bplist::kind::utf16String:
        return string(reference);
      case bplist::kind::uid:
        if (low > 7) throw FormatError("an integer is too long");
        // As the platform writes it in XML.
        return zib::ValueMap{{"CF$UID", bigEndian(cursor.take(low + 1))}};
      case bplist::kind::array:
        return array(length(low, cursor), cursor);
      case bplist::kind::dictionary:
        return dictionary(length(low, cursor), cursor);
      default:
        throw FormatError("an object is of an unknown kind");
    }
  }

  static zib::Value simple(unsigned marker) {
    if (marker == bplist::falseMarker) return false;
    if (marker == bplist::trueMarker) return true;
    throw FormatError("an object is of an unknown kind");
  }

  static zib::Value integer(unsigned exponent, Cursor& cursor) {
    if (exponent > 4) throw FormatError("an integer is too long");
    if (exponent == 4) {
      const std::uint64_t high = bigEndian(cursor.take(8));
      const std::uint64_t number = bigEndian(cursor.take(8));
      if (high != 0) throw FormatError("an integer is too great");
      return number;
    }
    const std::uint64_t number = bigEndian(cursor.take(std::uint64_t{1} << exponent));
    return exponent == 3 ? zib::Value(static_cast<std::int64_t>(number)) : zib::Value(number);
  }

  static zib::Value real(unsigned exponent, Cursor& cursor) {
    if (exponent == 2) {
      return static_cast<double>(
          std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(cursor.take(4)))));
    }
    if (exponent != 3) throw FormatError("a real number is of an unknown length");
    return std::bit_cast<double>(bigEndian(cursor.take(8)));
  }

  static zib::Value date(unsigned exponent, Cursor& cursor) {
    const auto seconds = std::bit_cast<double>(bigEndian(cursor.take(8)));
    if (exponent != 3 || !std::isfinite(seconds)) throw FormatError("a date is no date");
    return zib::Date{seconds + referenceDate};
  }

  std::string string(std::uint64_t reference) {
    Cursor cursor(bytesOf(reference));
    const unsigned marker = cursor.takeByte();
    const unsigned low = marker & 0xFU;
    if (marker >> 4U == bplist::kind::utf16String) {
      return textFrom(spent(cursor.take(length(low, cursor), 2)), TextEncoding::utf16Big);
    }
    if (marker >> 4U != bplist::kind::asciiString) throw FormatError("a key is no string");
    const Bytes ascii = spent(cursor.take(length(low, cursor)));
    for (const std::uint8_t byte : ascii) {
      if (byte >= 0x80) throw FormatError("a string that should be ASCII is not");
    }
    return {ascii.begin(), ascii.end()};
  }

  zib::Value array(std::uint64_t count, Cursor& cursor) {
    const Nesting nesting(budget_);
    Cursor references(cursor.take(count, trailer_.referenceSize));
    zib::Array array;
    for (std::uint64_t index = 0; index < count; ++index) {
      array.push_back(object(nextReference(references)));
    }
    return array;
  }

  zib::Value dictionary(std::uint64_t count, Cursor& cursor) {
    const Nesting nesting(budget_);
    Cursor keys(cursor.take(count, trailer_.referenceSize));
    Cursor values(cursor.take(count, trailer_.referenceSize));
    SortedMembers members;
    for (std::uint64_t index = 0; index < count; ++index) {
      std::string key = string(nextReference(keys));
      members.insert_or_assign(std::move(key), object(nextReference(values)));
    }
    return mapFrom(std::move(members));
  }

  std::uint64_t nextReference(Cursor& references) const {
    return bigEndian(references.take(trailer_.referenceSize));
  }

  Bytes spent(Bytes bytes) {
    budget_.spendBytes(bytes.size());
    return bytes;
  }

  Trailer trailer_;
  Bytes content_;
  Bytes offsets_;
  Budget budget_;
};

}  // namespace

zib::Value readBinaryPropertyList(Bytes bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (!text.starts_with(bplist::header)) throw FormatError("the binary form's version is unknown");
  return BinaryReader(bytes).read();
}

}  // namespace sim
