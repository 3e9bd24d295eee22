#include "ZibMessaging/Private/FirebasePlistFile.h"

#include "ZibMessaging/Private/LogLine.h"
#include "ZibPlatform/Foundation/Files.h"
#include "ZibPlatform/Foundation/PropertyList.h"

namespace zib {
namespace {

constexpr std::string_view storedPlistName = "GoogleService-Info.plist";

std::optional<Error> writePlist(const URL& file, const Dictionary& plist) {
  auto bytes = xmlPropertyList(plist);
  return bytes ? writeFile(file, *bytes) : std::move(bytes).error();
}

}  // namespace

void saveFirebasePlist(const Dictionary& plist) {
  const auto file = fileInDocuments(storedPlistName);
  if (!file) return;
  if (const auto error = writePlist(*file, plist)) {
    logError("Failed to save Firebase plist", error);
    return;
  }
  logLine("Firebase plist saved to: ", pathOf(*file));
}

std::optional<std::string> savedFirebasePlist() {
  const auto file = fileInDocuments(storedPlistName);
  if (!file) return std::nullopt;
  std::string path = pathOf(*file);
  return fileExists(path) ? std::optional(std::move(path)) : std::nullopt;
}

}  // namespace zib
