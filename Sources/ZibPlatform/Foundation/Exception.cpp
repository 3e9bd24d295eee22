#include "ZibPlatform/Foundation/Exception.h"

#include <exception>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/HandledException.h"
#include "ZibPlatform/ObjectiveC/Selector.h"

namespace zib {
namespace {

std::string textOfHandled() {
  const char* text = nullptr;
  try {
    throw;
  } catch (const std::exception& exception) {
    text = exception.what();
  } catch (...) {
    text = nullptr;
  }
  return text == nullptr ? "an exception of a type of its own" : text;
}

}  // namespace

[[gnu::cold, gnu::noinline]] Caught CaughtException::handled() noexcept {
  auto caught = std::make_unique<CaughtException>();
  if (const objc::id platforms = objc::handledException()) {
    caught->platforms = Object::retained(platforms);
  } else {
    caught->text = textOfHandled();
  }
  return caught;
}

std::string CaughtException::description() const {
  if (!platforms) return text;
  const objc::id exception = platforms.raw();
  return joined({textAnswered(exception, selector<"name">(), Class::ofObject(exception).name()),
                 ": ", textAnswered(exception, selector<"reason">(), "no reason given")});
}

}  // namespace zib
