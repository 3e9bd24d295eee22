// Reading what the servers of the remote push configuration answer. Neither sends nor stores
// anything.

#pragma once

#include <optional>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Result.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/URLSession.h"

namespace zib {

// What the configuration document says: whether push is on, and where the app's Firebase property
// list is. A configuration that is off names no property list, whatever its document does.
struct RemotePushConfig {
  bool enabled = false;
  std::optional<URL> firebasePlistURL;

  static RemotePushConfig from(const Dictionary& document);
};

// An answer without a usable document counts as a configuration that is off; failures are those of
// the exchange and of the JSON reader. Logs the switch where there was a document to read it from.
Result<RemotePushConfig> readPushConfig(const URLReply& reply);

// The property list, which can be in any of its forms. The HTTP status is not looked at.
Result<Dictionary> readFirebasePlist(const URLReply& reply);

}  // namespace zib
