#include "ZibMessaging/Private/CampaignParameters.h"

#include <string>

#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/QuotedText.h"
#include "ZibPlatform/Foundation/Value.h"

namespace zib {
namespace {

constexpr std::string_view prefix = "utm_";

// Whether a query of this text could hold campaign parameters. Splitting a URL costs more than all
// else in a callback, and most have none. A name can also be percent-encoded.
bool mayHaveParameters(std::string_view url) {
  const std::size_t query = url.find('?');
  if (query == std::string_view::npos) return false;
  return url.find(prefix, query) != std::string_view::npos ||
         url.find('%', query) != std::string_view::npos;
}

// As often as the query has them.
ValueMap parametersOf(const URL& url) {
  const auto items = url.queryItems();
  ValueMap parameters;
  parameters.reserve(items.size());
  for (const QueryItem& item : items) {
    const Utf8 name(item.name);
    if (!name.view().starts_with(prefix)) continue;
    parameters.append(name.view()).setText(Utf8(item.value).view());
  }
  return parameters;
}

}  // namespace

void logCampaignParameters(const URL& url, std::string_view text) {
  if (!mayHaveParameters(text)) return;
  const auto parameters = parametersOf(url);
  if (parameters.empty()) return;
  std::string line = "   📊 UTM parameters: [";
  // By name, so that the line is the same for the same parameters. The last of a name decides.
  const auto sorted = byKey(parameters);
  for (std::size_t at = 0; at < sorted.size(); ++at) {
    const Member& parameter = *sorted[at];
    if (at + 1 < sorted.size() && sorted[at + 1]->key == parameter.key) continue;
    if (line.back() != '[') line.append(", ");
    appendQuoted(line, parameter.key);
    line.append(": ");
    appendQuoted(line, *parameter.value.get<std::string>());
  }
  logLine(line.append("]"));
}

}  // namespace zib
