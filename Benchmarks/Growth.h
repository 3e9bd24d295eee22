// How costs grow with what is in a notification or a link, and with the number of callbacks.

#pragma once

namespace bench {

// Prints the figures. In a process that has the device and the sink.
void printGrowth();

}  // namespace bench
