// The fields of the header of a request or an answer, and names as HTTP compares them.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sim {

struct HTTPHeader {
  std::string name;
  std::string value;
};

// ASCII only, as in schemes, host names and header names.
std::string lowerCase(std::string_view text);

// Of the first field of a name, which is given in lower case; null where there is none.
const std::string* headerValue(const std::vector<HTTPHeader>& headers, std::string_view name);

}  // namespace sim
