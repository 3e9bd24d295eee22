#include "ZibMessaging/Private/RemotePushConfig.h"

#include <utility>

#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/ZibPushError.h"
#include "ZibPlatform/Foundation/JSON.h"
#include "ZibPlatform/Foundation/PropertyList.h"

namespace zib {

RemotePushConfig RemotePushConfig::from(const Dictionary& document) {
  const bool enabled = document.boolean(constantString<"ios_config_toggle">).value_or(false);
  const StringRef url = document.text(constantString<"ios_private_key_url">);
  return {enabled, enabled ? URL::parse(url) : std::nullopt};
}

Result<RemotePushConfig> readPushConfig(const URLReply& reply) {
  constexpr long statusOK = 200;
  if (reply.error) return *reply.error;
  if (reply.body.empty() || reply.httpStatus != statusOK) return RemotePushConfig();
  auto root = parseJSON(reply.body);
  if (!root) return std::move(root).error();
  const auto document = Dictionary::withTextKeys(*root);
  if (!document) return RemotePushConfig();
  Result<RemotePushConfig> config = RemotePushConfig::from(*document);
  logLine(config->enabled ? "Push config: enabled=true" : "Push config: enabled=false");
  return config;
}

Result<Dictionary> readFirebasePlist(const URLReply& reply) {
  if (reply.error) return *reply.error;
  if (reply.body.empty()) return errorFrom(ZibPushError::noData);
  auto root = parsePropertyList(reply.body);
  if (!root) return std::move(root).error();
  auto plist = Dictionary::withTextKeys(*root);
  if (!plist) return errorFrom(ZibPushError::invalidPlist);
  return *std::move(plist);
}

}  // namespace zib
