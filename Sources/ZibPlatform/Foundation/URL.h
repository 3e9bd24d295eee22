// A handle on the platform's URL.

#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// One `name=value` of a query, percent-decoded. No value where there is no equals sign.
struct QueryItem {
  StringRef name;
  StringRef value;
};

// Copies share the platform's object, which never changes.
class URL : public Handle {
 public:
  // Strict: an empty text is no URL, and characters that a URL cannot hold are not repaired, on no
  // version of the system (since iOS 17 the platform repairs unless it is told not to).
  static std::optional<URL> parse(std::string_view text);
  static std::optional<URL> parse(StringRef text);
  // None for nil and for what is no NSURL.
  static std::optional<URL> retained(objc::id object);

  // For as long as the URL lives.
  [[nodiscard]] StringRef text() const;
  // The items in the order of the query, for as long as the current autorelease pool; none when the
  // URL has no query or cannot be split.
  [[nodiscard]] std::vector<QueryItem> queryItems() const;

 private:
  friend class Borrowed<URL>;
  explicit URL(Object native) noexcept : Handle(std::move(native)) {}
};

}  // namespace zib
