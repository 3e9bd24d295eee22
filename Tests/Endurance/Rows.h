// The callbacks of the system that the module intercepts, and functions in every role that a host
// or another swizzler can give one: numbered, so that many can stand in one chain.

#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Selector.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

namespace endurance {

using zib::BlockLayout;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::IMP;
using zib::objc::SEL;
using zib::objc::UInteger;

// Who ran, in order: the role with its number, and the selector that it was called with.
std::vector<std::string>& calls();
void note(const char* role, std::size_t number, SEL command);

inline constexpr std::size_t roles = 8;

// How a row's functions answer: by a result, a completion with options, one without, or not at all.
enum class Answers { no, result, options, completion };

zib::Selector selectorOf(std::size_t row);

// What a function that calls nobody else does.
template <Answers Kind, class Result, class... Arguments>
Result answer(std::size_t number, Arguments... arguments) {
  [[maybe_unused]] const auto last = std::get<sizeof...(Arguments) - 1>(std::tuple(arguments...));
  if constexpr (Kind == Answers::result) return static_cast<Result>(number % 2);
  if constexpr (Kind == Answers::options) zib::Block<void(UInteger)>::call(last, number);
  if constexpr (Kind == Answers::completion) zib::Block<void()>::call(last);
}

template <Answers Kind, std::size_t Row, std::size_t Number, class Signature>
struct Functions;

template <Answers Kind, std::size_t Row, std::size_t Number, class Result, class... Arguments>
struct Functions<Kind, Row, Number, Result(id, SEL, Arguments...)> {
  // The host's own method.
  static Result host(id /*self*/, SEL command, Arguments... arguments) {
    note("host", Number, command);
    return answer<Kind, Result>(Number, arguments...);
  }

  // Put in a method's place by a swizzler that keeps the function from before.
  static Result replacing(id self, SEL command, Arguments... arguments) {
    note("replacing", Number, command);
    return onward(saved, self, command, arguments...);
  }
  inline static IMP saved = nullptr;

  // Exchanged with a method of this selector of its own, which it calls.
  static Result exchanging(id self, SEL command, Arguments... arguments) {
    note("exchanging", Number, command);
    const zib::Method other = zib::Class::ofObject(self).instanceMethod(exchanged);
    const bool isItself = other.implementation() == zib::objc::functionCast<IMP>(&exchanging);
    return onward(isItself ? nullptr : other.implementation(), self, exchanged.raw(), arguments...);
  }
  inline static zib::Selector exchanged{"swizzler"};

  // The method of a subclass that was put under an object, and that calls super.
  static Result overriding(id self, SEL command, Arguments... arguments) {
    note("overriding", Number, command);
    const zib::Selector own = selectorOf(Row);
    const zib::Method inherited = subclass.superclass().instanceMethod(own);
    return onward(inherited ? inherited.implementation() : nullptr, self, own.raw(), arguments...);
  }
  inline static zib::Class subclass;

 private:
  static Result onward(IMP function, id self, SEL command, Arguments... arguments) {
    if (function == nullptr) return answer<Kind, Result>(Number, arguments...);
    return zib::callImplementation<Result>(function, self, zib::Selector(command), arguments...);
  }
};

// The same behind one type, for choosing at run time.
struct Role {
  IMP host;
  IMP replacing;
  IMP* saved;
  IMP exchanging;
  zib::Selector* exchanged;
  IMP overriding;
  zib::Class* subclass;
};

struct Row {
  const char* selector;
  const char* types;
  std::array<Role, roles> role;
};

template <Answers Kind, std::size_t Index, class Signature, std::size_t... Numbers>
Row makeRow(const char* selector, std::index_sequence<Numbers...> /*numbers*/) {
  const auto makeRole = [](auto number) {
    using Each = Functions<Kind, Index, number(), Signature>;
    using zib::objc::functionCast;
    return Role{functionCast<IMP>(&Each::host),
                functionCast<IMP>(&Each::replacing),
                &Each::saved,
                functionCast<IMP>(&Each::exchanging),
                &Each::exchanged,
                functionCast<IMP>(&Each::overriding),
                &Each::subclass};
  };
  return {selector,
          zib::encoding::Method<Signature>::value.data(),
          {makeRole(std::integral_constant<std::size_t, Numbers>())...}};
}

enum RowIndex : std::size_t {
  deviceToken,
  registrationFailure,
  openURL,
  openURLContexts,
  present,
  respond,
  fcmToken,
  rowCount
};

const std::array<Row, rowCount>& rows();

}  // namespace endurance
