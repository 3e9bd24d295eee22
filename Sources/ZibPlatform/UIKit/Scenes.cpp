#include "ZibPlatform/UIKit/Scenes.h"

#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

ConnectedScenes ConnectedScenes::of(const Application& application) {
  ConnectedScenes result;
  const auto scenes = send<objc::id>(application.native(), selector<"connectedScenes">());
  for (const objc::id scene : elements(scenes)) result.scenes_.push_back(Object::retained(scene));
  return result;
}

std::vector<Object> ConnectedScenes::windowSceneDelegates() const {
  std::vector<Object> delegates;
  for (const Object& scene : scenes_) {
    const objc::id window = cast<"UIWindowScene">(scene.raw());
    const objc::id delegate = send<objc::id>(window, selector<"delegate">());
    if (delegate != nullptr) delegates.push_back(Object::retained(delegate));
  }
  return delegates;
}

std::optional<URL> urlOfContext(objc::id context) {
  return URL::retained(send<objc::id>(context, selector<"URL">()));
}

}  // namespace zib
