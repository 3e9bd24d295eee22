#include "ZibPlatform/Foundation/URL.h"

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

bool canBeToldNotToRepair() {
  static const bool can = static_cast<bool>(classNamed<"NSURL">().instanceMethod(
      selector<"initWithString:encodingInvalidCharacters:">()));
  return can;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  return parse(StringRef::of(makeString(text).raw()));
}

std::optional<URL> URL::parse(StringRef text) {
  if (send<objc::UInteger>(text.native(), selector<"length">()) == 0) return std::nullopt;
  Object url = canBeToldNotToRepair()
                   ? create<"NSURL", "initWithString:encodingInvalidCharacters:">(text.native(),
                                                                                  objc::BOOL{0})
                   : create<"NSURL", "initWithString:">(text.native());
  if (!url) return std::nullopt;
  return URL(std::move(url));
}

std::optional<URL> URL::retained(objc::id object) {
  if (!isKind<"NSURL">(object)) return std::nullopt;
  return URL(Object::retained(object));
}

StringRef URL::text() const {
  return StringRef::of(send<objc::id>(native(), selector<"absoluteString">()));
}

std::vector<QueryItem> URL::queryItems() const {
  const objc::id components =
      sendToClass<"NSURLComponents", "componentsWithURL:resolvingAgainstBaseURL:">(native(),
                                                                                   objc::BOOL{1});
  const objc::id items = send<objc::id>(components, selector<"queryItems">());
  std::vector<QueryItem> result(send<objc::UInteger>(items, selector<"count">()));
  for (std::size_t index = 0; index < result.size(); ++index) {
    const objc::id item =
        send<objc::id>(items, selector<"objectAtIndex:">(), objc::UInteger{index});
    result[index] = {StringRef::of(send<objc::id>(item, selector<"name">())),
                     StringRef::of(send<objc::id>(item, selector<"value">()))};
  }
  return result;
}

}  // namespace zib
