// The files of the page, which the build puts into the program.

#pragma once

#include <string_view>

namespace sim::assets {

extern const std::string_view style;   // page.css
extern const std::string_view script;  // page.js
extern const std::string_view page;    // page.html

}  // namespace sim::assets
