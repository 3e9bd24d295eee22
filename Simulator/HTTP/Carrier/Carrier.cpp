#include "Simulator/HTTP/Carrier/Carrier.h"

#include "Simulator/HTTP/Library.h"

extern "C" __attribute__((visibility("default"))) const sim::HTTPLibrary zib_http_library{
    &sim::carrier::makeTransfer, &sim::carrier::makeServer, &sim::carrier::resolve};
