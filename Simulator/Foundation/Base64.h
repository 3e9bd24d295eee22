// Bytes as base64 text.

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Data.h"

namespace sim {

std::string base64From(std::span<const std::uint8_t> bytes);

// White space counts for nothing. None for any other text that is not base64.
std::optional<zib::Bytes> bytesFromBase64(std::string_view text);

}  // namespace sim
