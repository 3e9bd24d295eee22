#include "Simulator/HTTP/Header.h"

#include <algorithm>

namespace sim {

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
  });
  return lower;
}

const std::string* headerValue(const std::vector<HTTPHeader>& headers, std::string_view name) {
  const auto found = std::find_if(headers.begin(), headers.end(), [&](const HTTPHeader& each) {
    return lowerCase(each.name) == name;
  });
  return found == headers.end() ? nullptr : &found->value;
}

}  // namespace sim
