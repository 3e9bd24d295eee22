#include "ZibMessaging/Private/CampaignParameters.h"

#include <map>
#include <string>

#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/QuotedText.h"

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

// By name, so that the line is the same for the same parameters. The last of a name decides.
std::map<std::string, std::string> parametersOf(const URL& url) {
  std::map<std::string, std::string> parameters;
  for (const QueryItem& item : url.queryItems()) {
    std::string name = item.name.utf8();
    if (name.starts_with(prefix)) parameters[std::move(name)] = item.value.utf8();
  }
  return parameters;
}

}  // namespace

void logCampaignParameters(const URL& url, std::string_view text) {
  if (!mayHaveParameters(text)) return;
  const auto parameters = parametersOf(url);
  if (parameters.empty()) return;
  std::string line = "   📊 UTM parameters: [";
  for (const auto& [name, value] : parameters) {
    if (line.back() != '[') line.append(", ");
    appendQuoted(line, name);
    line.append(": ");
    appendQuoted(line, value);
  }
  logLine(line.append("]"));
}

}  // namespace zib
