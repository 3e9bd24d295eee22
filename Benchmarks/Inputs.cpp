#include "Benchmarks/Inputs.h"

#include <cstdint>
#include <utility>

#include "ZibPlatform/Foundation/ValueConversion.h"

namespace bench {

using zib::Object;
using zib::ValueMap;

zib::Bytes deviceToken() {
  zib::Bytes bytes(32);
  for (std::size_t at = 0; at < bytes.size(); ++at) bytes[at] = static_cast<std::uint8_t>(at * 37);
  return bytes;
}

ValueMap usualPayload() {
  return {{"aps", ValueMap{{"alert", ValueMap{{"title", "Autumn offers"},
                                              {"body", "Twenty percent off, until Sunday"}}},
                           {"badge", 1},
                           {"sound", "default"}}},
          {"pn_type", "PUSH-NOTIFICATION"},
          {"pn_campaign_id", "0f8b7a52-9d3f-4a8e-b1b3-52f1b6a7c001"},
          {"ma_campaign_id", "7c1de0c2-33b1-4f0e-8a53-1d9a6a2be002"},
          {"node_id", "a4b57e19-6f44-4c8f-9d6e-0b7d1f1fa003"},
          {"club", "gold"},
          {"environment", "production"},
          {"customer_key", "5f2a9c04d1e84b7f9a3c6d20"},
          {"click_url", "https://shop.example/offers/autumn?utm_source=push&utm_medium=app"},
          {"link", "https://shop.example/offers/autumn?utm_source=push&utm_medium=app"},
          {"_id", "c3e6f1d8-2b47-4e0d-8f15-9b0a7d6ce004"},
          {"title", "Autumn offers"}};
}

Object payloadOf(std::size_t keys, std::size_t bytes) {
  ValueMap payload;
  std::size_t size = 0;
  for (const zib::Member& member : usualPayload()) {
    if (payload.size() == keys) break;
    payload.append(member.key, member.value);
    size += member.key.size();
    if (const auto* value = member.value.get<std::string>()) size += value->size();
  }
  const std::size_t extra = keys > payload.size() ? keys - payload.size() : 0;
  for (std::size_t number = 0; number < extra; ++number) {
    const std::string key = "custom_key_" + std::to_string(number);
    const std::size_t length = bytes > size ? (bytes - size) / (extra - number) : key.size() + 8;
    std::string value(length > key.size() ? length - key.size() : 1, 'v');
    size += key.size() + value.size();
    payload.append(key, std::move(value));
  }
  return zib::objectFrom(payload);
}

std::string campaignURL(std::size_t parameters) {
  std::string url = "https://shop.example/offers/autumn?item=42";
  for (std::size_t number = 0; number < parameters; ++number) {
    url.append("&utm_name").append(std::to_string(number)).append("=autumn%20offers");
  }
  return url;
}

}  // namespace bench
