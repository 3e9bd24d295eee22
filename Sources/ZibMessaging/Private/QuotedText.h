// Text of a foreign origin inside a log line.

#pragma once

#include <string>
#include <string_view>

namespace zib {

// Whether the text has no character that breaks a line or is not shown. May say no of a text that
// has none, if it is not all ASCII.
bool isOneLine(std::string_view text) noexcept;

// Appends the text with its control characters escaped, so that the line stays one line.
void appendOneLine(std::string& line, std::string_view text);

// The same in double quotes, with quotation marks and backslashes escaped too, so that the parts of
// the line can be told apart.
void appendQuoted(std::string& line, std::string_view text);

}  // namespace zib
