// Reading what the servers of the remote push configuration answer. Neither sends nor stores
// anything.

#pragma once

#include <optional>

#include "Platform/Dictionary.h"
#include "Platform/Result.h"
#include "Platform/URL.h"
#include "Platform/URLSession.h"

// What the configuration document says: whether push is on, and where the app's Firebase property
// list is. A configuration that is off names no property list, whatever its document does.
struct RemotePushConfig {
  bool enabled = false;
  std::optional<zib::URL> firebasePlistURL;

  static RemotePushConfig from(const zib::Dictionary& document);
};

// An answer without a usable document counts as a configuration that is off; failures are those of
// the exchange and of the JSON reader. Logs the switch where there was a document to read it from.
zib::Result<RemotePushConfig> readPushConfig(const zib::URLReply& reply);

// The property list, which can be in any of its forms. The HTTP status is not looked at.
zib::Result<zib::Dictionary> readFirebasePlist(const zib::URLReply& reply);
