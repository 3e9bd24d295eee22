// NSURL and NSURLComponents as on the phone: strict parsing, texts that are kept as they were
// given, and queries of every kind of URL.

#include <algorithm>

#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Foundation/Installers.h"
#include "Simulator/Foundation/URLText.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::callImplementation;
using zib::Class;
using zib::makeString;
using zib::Object;
using zib::selector;
using zib::send;
using zib::utf8From;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::IMP;
using zib::objc::SEL;

struct Originals {
  IMP initWithString = nullptr;
  IMP absoluteString = nullptr;
  IMP initComponents = nullptr;
  objc_ivar* urlString = nullptr;
  objc_ivar* baseURL = nullptr;
};
Originals originals;

// GNUstep keeps the text that a URL was made from, and prints another one put together from parts.
void setOriginalText(id url, std::string_view text) {
  const id previous = object_getIvar(url, originals.urlString);
  object_setIvar(url, originals.urlString, zib::objc::retain(makeString(text).raw()));
  zib::objc::release(previous);
}

// GNUstep knows no authority without a path before a query or fragment: it gets the root path, and
// the text is then put right.
id initWithMissingPath(id url, SEL command, std::string text, std::size_t missingPath) {
  const std::string original = text;
  const id made = callImplementation<id>(originals.initWithString, url, zib::Selector(command),
                                         makeString(text.insert(missingPath, 1, '/')).raw());
  if (made != nullptr) setOriginalText(made, original);
  return made;
}

// Since version 17 the system parses by RFC 3986, repairs what breaks it unless it is told not to,
// and can be told so; before, it took square brackets anywhere and repaired nothing.
bool isModern() {
  constexpr long firstModern = 17;
  return foundation::systemVersion().major >= firstModern;
}

std::optional<URLText> parsedAsBySystem(std::string_view text) {
  return isModern() ? parseURLText(text) : parseLegacyURLText(text);
}

id initStrictly(id url, SEL command, std::string text) {
  const std::optional<URLText> parsed = parsedAsBySystem(text);
  if (!parsed) {
    zib::objc::release(url);
    return nullptr;
  }
  if (parsed->missingPath) {
    return initWithMissingPath(url, command, std::move(text), *parsed->missingPath);
  }
  return callImplementation<id>(originals.initWithString, url, zib::Selector(command),
                                makeString(text).raw());
}

id initWithString(id url, SEL, id text) {
  const std::string given = utf8From(text);
  return initStrictly(
      url, selector<"initWithString:">().raw(),
      isModern() && !parseURLText(given) ? withInvalidCharactersEncoded(given) : given);
}

id initEncoding(id url, SEL, id text, BOOL encodes) {
  const std::string given = utf8From(text);
  return initStrictly(
      url, selector<"initWithString:">().raw(),
      encodes != 0 && !parseURLText(given) ? withInvalidCharactersEncoded(given) : given);
}

id urlWithString(id cls, SEL, id text) {
  const id allocated = send<id>(cls, selector<"alloc">());
  return autoreleased(Object::adopted(send<id>(allocated, selector<"initWithString:">(), text)));
}

id urlEncoding(id cls, SEL, id text, BOOL encodes) {
  const id allocated = send<id>(cls, selector<"alloc">());
  return autoreleased(Object::adopted(
      send<id>(allocated, selector<"initWithString:encodingInvalidCharacters:">(), text, encodes)));
}

id absoluteString(id url, SEL command) {
  if (object_getIvar(url, originals.baseURL) != nullptr) {
    return callImplementation<id>(originals.absoluteString, url, zib::Selector(command));
  }
  return autoreleased(Object::retained(object_getIvar(url, originals.urlString)));
}

// None where the bytes are no text.
Object decodedQueryText(std::string_view encoded) {
  const std::string bytes = percentDecoded(encoded);
  Object text = makeString(bytes);
  return utf8From(text.raw()) == bytes ? text : Object();
}

id queryItemFrom(std::string_view item) {
  const std::size_t sign = item.find('=');
  const Object name = decodedQueryText(item.substr(0, sign));
  const Object value =
      sign == std::string_view::npos ? Object() : decodedQueryText(item.substr(sign + 1));
  return zib::sendToClass<"NSURLQueryItem", "queryItemWithName:value:">(
      name ? name.raw() : makeString("").raw(), value.raw());
}

id queryItemsFrom(std::string_view query) {
  const id items = zib::sendToClass<"NSMutableArray", "array">();
  for (std::size_t start = 0; !query.empty() && start <= query.size();) {
    const std::size_t end = std::min(query.find('&', start), query.size());
    send<void>(items, selector<"addObject:">(), queryItemFrom(query.substr(start, end - start)));
    start = end + 1;
  }
  return items;
}

// GNUstep loses an empty query, and the query of a URL whose path does not start with a slash, and
// cuts names and values at a NUL.
id initComponents(id components, SEL command, id url, BOOL resolves) {
  const id made = callImplementation<id>(originals.initComponents, components,
                                         zib::Selector(command), url, resolves);
  const std::string text = utf8From(send<id>(url, selector<"absoluteString">()));
  const std::optional<URLText> parsed = parsedAsBySystem(text);
  if (made != nullptr && parsed && parsed->query) {
    send<void>(made, selector<"setQueryItems:">(), queryItemsFrom(*parsed->query));
  }
  return made;
}

}  // namespace

void foundation::installURLs() {
  const Class url = Class::named("NSURL");
  originals.urlString = class_getInstanceVariable(url.raw(), "_urlString");
  originals.baseURL = class_getInstanceVariable(url.raw(), "_baseURL");
  originals.initWithString = installMethod(url, "initWithString:", &initWithString);
  originals.absoluteString = installMethod(url, "absoluteString", &absoluteString);
  installClassMethod(url, "URLWithString:", &urlWithString);

  const Class components = Class::named("NSURLComponents");
  originals.initComponents =
      installMethod(components, "initWithURL:resolvingAgainstBaseURL:", &initComponents);
}

void foundation::installURLsOfVersion() {
  if (!isModern()) return;
  const Class url = Class::named("NSURL");
  installMethod(url, "initWithString:encodingInvalidCharacters:", &initEncoding);
  installClassMethod(url, "URLWithString:encodingInvalidCharacters:", &urlEncoding);
}

}  // namespace sim
