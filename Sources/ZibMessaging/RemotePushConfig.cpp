#include "ZibMessaging/RemotePushConfig.h"

#include <string>

#include "Platform/JSON.h"
#include "Platform/PropertyList.h"
#include "ZibMessaging/LogLine.h"
#include "ZibMessaging/ZibPushError.h"

using zib::constantString;

RemotePushConfig RemotePushConfig::from(const zib::Dictionary& document) {
  RemotePushConfig config;
  config.enabled = document.boolean(constantString<"ios_config_toggle">).value_or(false);
  const auto url = document.string(constantString<"ios_private_key_url">);
  if (config.enabled && url) config.firebasePlistURL = zib::URL::parse(*url);
  return config;
}

zib::Result<RemotePushConfig> readPushConfig(const zib::URLReply& reply) {
  constexpr long statusOK = 200;
  if (reply.error) return *reply.error;
  if (reply.body.empty() || reply.httpStatus != statusOK) return RemotePushConfig();
  const auto root = zib::parseJSON(reply.body);
  if (!root) return root.error();
  const auto document = zib::Dictionary::withTextKeys(*root);
  if (!document) return RemotePushConfig();
  RemotePushConfig config = RemotePushConfig::from(*document);
  logLine(config.enabled ? "Push config: enabled=true" : "Push config: enabled=false");
  return config;
}

zib::Result<zib::Dictionary> readFirebasePlist(const zib::URLReply& reply) {
  if (reply.error) return *reply.error;
  if (reply.body.empty()) return errorFrom(ZibPushError::noData);
  const auto root = zib::parsePropertyList(reply.body);
  if (!root) return root.error();
  auto plist = zib::Dictionary::withTextKeys(*root);
  if (!plist) return errorFrom(ZibPushError::invalidPlist);
  return *std::move(plist);
}
