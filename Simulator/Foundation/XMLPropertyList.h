// The XML form of property lists, version 1.0.

#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "ZibPlatform/Foundation/Value.h"

namespace sim {

// A document without an XML declaration, document type or <plist> around its value is read too; one
// that declares entities is not. Throws FormatError.
zib::Value readXMLPropertyList(std::span<const std::uint8_t> bytes);

// Keys are sorted. Throws FormatError for what the form cannot hold: the null marker, characters
// that XML forbids, and dates that no calendar shows.
std::string writeXMLPropertyList(const zib::Value& value);

}  // namespace sim
