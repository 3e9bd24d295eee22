// The module's lines to the core's logger. A logger that breaks its promise and throws costs a line
// and nothing else.

#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

#include "ZibMessaging/Private/TokenText.h"
#include "ZibPlatform/Foundation/Error.h"

namespace zib {

// A piece of a line. What is no literal of the module's own may come from a host or a sender: its
// control characters are escaped, so that one line stays one line.
class LinePart {
 public:
  // NOLINTBEGIN(google-explicit-constructor): lines are written as lists of their parts.
  template <std::size_t Size>
  constexpr LinePart(const char (&literal)[Size]) : text_(literal, Size - 1), isForeign_(false) {}
  LinePart(const ShownHexText& token) noexcept : text_(token.view()), isForeign_(false) {}
  template <class Text>
  requires(std::convertible_to<Text, std::string_view> && !std::is_array_v<Text>)
      LinePart(const Text& text)
  noexcept : text_(text) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] std::string_view text() const noexcept { return text_; }
  [[nodiscard]] bool isForeign() const noexcept { return isForeign_; }

 private:
  std::string_view text_;
  bool isForeign_ = true;
};

// A line that is complete.
void logLine(std::string_view line) noexcept;
// Puts one line together from its parts, without an allocation where the line is short: most
// callbacks write one, on the app's main thread.
void logParts(std::span<const LinePart> parts) noexcept;
template <class... Parts>
requires(sizeof...(Parts) > 1) void logLine(const Parts&... parts) noexcept {
  logParts(std::array<LinePart, sizeof...(Parts)>{parts...});
}

// A failure, with the error where there is one.
void logError(std::string_view line) noexcept;
void logError(std::string_view line, const std::optional<Error>& error) noexcept;

}  // namespace zib
