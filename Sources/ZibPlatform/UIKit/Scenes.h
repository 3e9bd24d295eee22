// Window scenes and the URLs that they are asked to open. Main thread, as all of UIKit.

#pragma once

#include <optional>
#include <vector>

#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/UIKit/Application.h"

namespace zib {

// All scenes that are connected now, in the set's own order.
class ConnectedScenes {
 public:
  static ConnectedScenes of(const Application& application);

  [[nodiscard]] bool empty() const noexcept { return scenes_.empty(); }
  // The delegates of those that are window scenes and have one.
  [[nodiscard]] std::vector<Object> windowSceneDelegates() const;

 private:
  std::vector<Object> scenes_;
};

// The URL that one UIOpenURLContext carries.
std::optional<URL> urlOfContext(objc::id context);

}  // namespace zib
