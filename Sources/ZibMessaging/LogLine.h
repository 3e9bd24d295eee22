// Log lines that are put together from parts.

#pragma once

#include <initializer_list>
#include <string_view>

// Hands the core's logger one line, without an allocation where the line is short: most callbacks
// write one, on the app's main thread.
void logLine(std::initializer_list<std::string_view> parts);
