// A field of the header of a request or an answer.

#pragma once

#include <string>

namespace sim {

struct HTTPHeader {
  std::string name;
  std::string value;
};

}  // namespace sim
