// The folders that NSFileManager knows: on a device, Documents is the one that matters.

#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Foundation/Installers.h"
#include "Simulator/Foundation/Setting.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

constexpr UInteger documentDirectory = 9;
constexpr UInteger userDomain = 1;

Setting<std::optional<std::string>>& documentsSetting() {
  static Setting<std::optional<std::string>> documents(std::nullopt);
  return documents;
}

id urlsForDirectory(id, SEL, UInteger directory, UInteger domains) {
  const std::optional<std::string> documents = documentsSetting().get();
  if (directory != documentDirectory || (domains & userDomain) == 0 || !documents) {
    return zib::sendToClass<"NSArray", "array">();
  }
  return zib::sendToClass<"NSArray", "arrayWithObject:">(
      zib::sendToClass<"NSURL", "fileURLWithPath:isDirectory:">(zib::makeString(*documents).raw(),
                                                                BOOL{1}));
}

}  // namespace

void foundation::setDocumentsDirectory(std::optional<std::string> path) {
  documentsSetting().set(std::move(path));
}

void foundation::installDirectories() {
  installMethod(zib::Class::named("NSFileManager"),
                "URLsForDirectory:inDomains:", &urlsForDirectory);
}

}  // namespace sim
