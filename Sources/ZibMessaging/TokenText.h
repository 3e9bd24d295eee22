// How tokens appear in log lines. A token is a credential: it is never logged whole.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// The first 20 characters, and "..." even when that is all of it.
std::string tokenDisplay(std::string_view token);

// Each byte as two lowercase hexadecimal digits.
std::string hexText(std::span<const std::uint8_t> bytes);
