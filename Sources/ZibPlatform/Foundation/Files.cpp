#include "ZibPlatform/Foundation/Files.h"

#include "ZibPlatform/Foundation/ErrorPointer.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

constexpr objc::UInteger documentDirectory = 9;  // NSDocumentDirectory
constexpr objc::UInteger userDomain = 1;         // NSUserDomainMask
constexpr objc::UInteger noOptions = 0;

objc::id fileManager() { return sendToClass<"NSFileManager", "defaultManager">(); }

}  // namespace

std::optional<URL> fileInDocuments(std::string_view name) {
  const AutoreleasePool pool;
  const objc::id directories = send<objc::id>(
      fileManager(), selector<"URLsForDirectory:inDomains:">(), documentDirectory, userDomain);
  if (send<objc::UInteger>(directories, selector<"count">()) == 0) return std::nullopt;
  const objc::id first =
      send<objc::id>(directories, selector<"objectAtIndex:">(), objc::UInteger{0});
  return URL::retained(
      send<objc::id>(first, selector<"URLByAppendingPathComponent:">(), makeString(name).raw()));
}

std::string pathOf(const URL& file) {
  const AutoreleasePool pool;
  return utf8From(send<objc::id>(file.native(), selector<"path">()));
}

bool fileExists(std::string_view path) {
  return send<objc::BOOL>(fileManager(), selector<"fileExistsAtPath:">(), makeString(path).raw()) !=
         0;
}

std::optional<Error> writeFile(const URL& file, const Object& data) {
  return failureOf([&](objc::id* error) {
    return send<objc::BOOL>(data.raw(), selector<"writeToURL:options:error:">(), file.native(),
                            noOptions, error) != 0;
  });
}

}  // namespace zib
