#include "ZibPlatform/UIKit/Scenes.h"

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

ConnectedScenes ConnectedScenes::of(const Application& application) {
  ConnectedScenes result;
  result.scenes_ = elementsOf(send<objc::id>(application.native(), selector<"connectedScenes">()));
  return result;
}

std::vector<Object> ConnectedScenes::windowSceneDelegates() const {
  std::vector<Object> delegates;
  for (const Object& scene : scenes_) {
    if (!isKindOf(scene.raw(), classNamed<"UIWindowScene">())) continue;
    const objc::id delegate = send<objc::id>(scene.raw(), selector<"delegate">());
    if (delegate != nullptr) delegates.push_back(Object::retained(delegate));
  }
  return delegates;
}

std::vector<Object> elementsOf(objc::id set) {
  std::vector<Object> elements;
  const objc::id enumerator = send<objc::id>(set, selector<"objectEnumerator">());
  while (const objc::id element = send<objc::id>(enumerator, selector<"nextObject">())) {
    elements.push_back(Object::retained(element));
  }
  return elements;
}

std::optional<URL> urlOfContext(objc::id context) {
  return URL::retained(send<objc::id>(context, selector<"URL">()));
}

}  // namespace zib
