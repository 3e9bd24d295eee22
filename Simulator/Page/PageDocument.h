// A whole HTML document around what a page shows.

#pragma once

#include <string>
#include <string_view>

#include "Simulator/Page/Markup.h"

namespace sim {

// Needs nothing else: no script, no file, no network.
std::string standaloneDocument(std::string_view title, const Markup& body);

// For a page that has the style already and takes what stands in <main>.
std::string partialDocument(std::string_view title, const Markup& body);
std::string partialFrom(std::string standaloneDocument);

}  // namespace sim
