// Texts across zib.h.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ZibC/zib.h"

namespace sim {

inline zib_text cText(std::string_view text) { return {text.data(), text.size()}; }

inline std::string_view textOf(zib_text text) { return {text.bytes, text.size}; }

// Of a text that a function of zib.h has copied; none for no text.
inline std::optional<std::string> taken(zib_text copied) {
  if (copied.bytes == nullptr) return std::nullopt;
  std::string text(textOf(copied));
  zib_text_free(copied);
  return text;
}

}  // namespace sim
