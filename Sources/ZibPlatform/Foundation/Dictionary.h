// A handle on a platform dictionary, such as a notification's `userInfo`.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Result.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// Keeps the platform's own dictionary and reads it in place: nothing is converted but the entries
// that are asked for. Copies share the dictionary. Reading is safe from any thread as long as
// nobody changes the dictionary.
class Dictionary : public Handle {
 public:
  // An empty dictionary.
  Dictionary() noexcept = default;
  // Anything that is no dictionary, nil included, counts as an empty one: the platform's callbacks
  // promise a dictionary, and a payload must never be a reason to crash.
  static Dictionary retained(objc::id object);
  static Dictionary from(const ValueMap& values);
  // None for anything but a dictionary whose keys are all text.
  static std::optional<Dictionary> withTextKeys(const Object& object);

  [[nodiscard]] bool empty() const;
  // The text under exactly that key, if there is one and it is a string, for as long as the
  // dictionary is not changed; numbers are not converted.
  [[nodiscard]] StringRef text(const ConstantString& key) const;
  [[nodiscard]] StringRef text(std::string_view key) const;
  // The truth value under exactly that key, if there is one: a boolean, or a number that is 1 or 0,
  // since the platform has one type for both.
  [[nodiscard]] std::optional<bool> boolean(const ConstantString& key) const;
  // All of it, nested values included; an error where that is more than 256 levels or 100,000
  // values, since a payload's extent is its sender's choice.
  [[nodiscard]] Result<ValueMap> values() const;
  // The platform's object; an empty dictionary has one too.
  [[nodiscard]] objc::id native() const;

 private:
  friend class Borrowed<Dictionary>;
  explicit Dictionary(Object native) noexcept : Handle(std::move(native)) {}
  [[nodiscard]] objc::id valueOf(objc::id key) const;
};

}  // namespace zib
