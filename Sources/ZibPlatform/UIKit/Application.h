// The running application object, found by name: the module links no UIKit and also runs where
// there is no application.

#pragma once

#include <optional>
#include <utility>

#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// Main thread, as all of UIKit; only handing the object on is free to any.
class Application : public Handle {
 public:
  // The shared application, or none: no class "UIApplication", one that is no NSObject, or nil.
  static std::optional<Application> shared();
  // An application object that the host hands in; nil is one that does nothing.
  static Application retained(objc::id object) { return Application(Object::retained(object)); }

  // Whether it is an instance of the class "UIApplication".
  [[nodiscard]] bool isApplicationObject() const;
  // Nil when there is none.
  [[nodiscard]] objc::id delegate() const;
  // Sets the delegate that there is once more. The system asks a delegate which optional methods it
  // has when it is set, and remembers. Nothing happens when the application takes none.
  void renewDelegate() const;
  // The answer arrives at the application delegate.
  void registerForRemoteNotifications() const;
  // False, and nothing happens, when the application does not respond to the open selector. The
  // completion gets, on the main thread, whether the system opened the URL; it must not throw.
  template <class Completion>
  bool open(const URL& url, Completion completion) const {
    return openThen(url,
                    OpenCompletion::from([completion = std::move(completion)](objc::BOOL success) {
                      completion(success != 0);
                    }));
  }

 private:
  using OpenCompletion = Block<void(objc::BOOL)>;

  explicit Application(Object native) noexcept : Handle(std::move(native)) {}

  [[nodiscard]] bool openThen(const URL& url, const OpenCompletion& completion) const;
};

}  // namespace zib
