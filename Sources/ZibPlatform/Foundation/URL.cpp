#include "ZibPlatform/Foundation/URL.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

bool canBeToldNotToRepair() {
  static const bool can = static_cast<bool>(classNamed<"NSURL">().instanceMethod(
      selector<"initWithString:encodingInvalidCharacters:">()));
  return can;
}

std::string optionalText(objc::id string) {
  return isString(string) ? utf8From(string) : std::string();
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  return parse(StringRef::of(makeString(text).raw()));
}

std::optional<URL> URL::parse(StringRef text) {
  if (send<objc::UInteger>(text.native(), selector<"length">()) == 0) return std::nullopt;
  const objc::id allocated = send<objc::id>(classNamed<"NSURL">().object(), selector<"alloc">());
  const objc::id url =
      canBeToldNotToRepair()
          ? send<objc::id>(allocated, selector<"initWithString:encodingInvalidCharacters:">(),
                           text.native(), objc::BOOL{0})
          : send<objc::id>(allocated, selector<"initWithString:">(), text.native());
  if (url == nullptr) return std::nullopt;
  return URL(Object::adopted(url));
}

std::optional<URL> URL::retained(objc::id object) {
  if (!isKind<"NSURL">(object)) return std::nullopt;
  return URL(Object::retained(object));
}

std::string URL::absoluteString() const { return optionalText(text().native()); }

StringRef URL::text() const { return textOfURL(native_.raw()); }

StringRef textOfURL(objc::id url) {
  if (!isKind<"NSURL">(url)) return {};
  return StringRef::of(send<objc::id>(url, selector<"absoluteString">()));
}

std::vector<QueryItem> URL::queryItems() const {
  const objc::id components = send<objc::id>(
      classNamed<"NSURLComponents">().object(),
      selector<"componentsWithURL:resolvingAgainstBaseURL:">(), native_.raw(), objc::BOOL{1});
  const objc::id items = send<objc::id>(components, selector<"queryItems">());
  const auto count = send<objc::UInteger>(items, selector<"count">());
  std::vector<QueryItem> result;
  result.reserve(count);
  for (objc::UInteger index = 0; index < count; ++index) {
    const objc::id item = send<objc::id>(items, selector<"objectAtIndex:">(), index);
    const objc::id value = send<objc::id>(item, selector<"value">());
    result.push_back({optionalText(send<objc::id>(item, selector<"name">())),
                      isString(value) ? std::optional(utf8From(value)) : std::nullopt});
  }
  return result;
}

}  // namespace zib
