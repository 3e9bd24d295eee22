// Why an exchange failed, by the platform's codes of its URL errors.

#pragma once

#include "ZibPlatform/Foundation/Error.h"

namespace sim {

enum class URLError {
  unknown = -1,
  cancelled = -999,
  timedOut = -1001,
  unsupportedURL = -1002,
  cannotFindHost = -1003,
  cannotConnectToHost = -1004,
  networkConnectionLost = -1005,
  httpTooManyRedirects = -1007,
  notConnectedToInternet = -1009,
  badServerResponse = -1011,
  secureConnectionFailed = -1200,
};

// As the platform hands it over.
zib::Error errorFrom(URLError error);

}  // namespace sim
