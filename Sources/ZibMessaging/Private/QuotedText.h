// Text of a foreign origin inside a log line.

#pragma once

#include <string>
#include <string_view>

namespace zib {

// Appends the text in double quotes. Quotation marks, backslashes and control characters are
// escaped, so that the line stays one line and its parts can be told apart.
void appendQuoted(std::string& line, std::string_view text);

}  // namespace zib
