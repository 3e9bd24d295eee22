// The seven methods that are installed on the host's delegates. Each runs with the host's delegate
// as its receiver, does the module's own handling first, and then forwards to the host's
// implementation with the host's own receiver, selector and arguments, if there was one to replace.
// What the host's implementation throws passes through.

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/PresentationOptions.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/UIKit/Scenes.h"

using zib::Block;
using zib::BlockLayout;
using zib::contained;
using zib::foregroundPresentationOptions;
using zib::logLine;
using zib::shownOf;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

namespace {

// A logger that breaks its promise and throws must not cost the callback its handling.
template <class... Parts>
void logIntercepted(Parts... parts) noexcept {
  contained("the log line of an interceptor", [&] { logLine(parts...); });
}

}  // namespace

struct ZibSwizzleManager::Forwarding {
  Row row;
  id receiver;
  id subject;
  const Installation* installation;
  const Forwarding* outer;

  static thread_local const Forwarding* innermost;
};

thread_local const ZibSwizzleManager::Forwarding* ZibSwizzleManager::Forwarding::innermost =
    nullptr;

struct ZibSwizzleManager::Interceptors {
  // One callback on its way through an interceptor. `subject` is the object that the callback is
  // about: with the receiver it tells a call of `super` from another callback.
  class Callback {
   public:
    Callback(Row row, id receiver, id subject) : row_(row), receiver_(receiver), subject_(subject) {
      const ZibSwizzleManager& manager = shared();
      const Interception& interception = at(row);
      if (!(manager.*interception.didSwap) || manager.*interception.original == nullptr) return;
      if (const Forwarding* const outer = sameCallInProgress()) {
        installation_ = manager.findInstallation(row, outer->installation->owner.superclass());
        isSuperCall_ = installation_ != nullptr;
      }
      // Where no superclass is intercepted, `super` cannot lead here: the host calls itself again.
      if (!isSuperCall_) {
        installation_ = manager.findInstallation(row, zib::Class::ofObject(receiver));
      }
    }

    // False when the host's own method has passed this callback on to its superclass, whose method
    // is intercepted too: the module has handled it already.
    [[nodiscard]] bool isNew() const noexcept { return !isSuperCall_; }

    [[nodiscard]] bool isForwarded() const noexcept {
      return installation_ != nullptr && installation_->original != nullptr;
    }

    template <class Result, class... Arguments>
    Result forward(Arguments... arguments) const {
      const InProgress inProgress(
          {row_, receiver_, subject_, installation_, Forwarding::innermost});
      return zib::callImplementation<Result>(installation_->original, receiver_,
                                             installation_->selector, arguments...);
    }

   private:
    class InProgress {
     public:
      explicit InProgress(const Forwarding& forwarding) : forwarding_(forwarding) {
        Forwarding::innermost = &forwarding_;
      }
      ~InProgress() { Forwarding::innermost = forwarding_.outer; }
      InProgress(const InProgress&) = delete;
      InProgress& operator=(const InProgress&) = delete;

     private:
      Forwarding forwarding_;
    };

    // Null unless the host's implementation is running for this callback already.
    [[nodiscard]] const Forwarding* sameCallInProgress() const noexcept {
      const Forwarding* const innermost = Forwarding::innermost;
      const bool isSameCall = innermost != nullptr && innermost->row == row_ &&
                              innermost->receiver == receiver_ && innermost->subject == subject_;
      return isSameCall ? innermost : nullptr;
    }

    Row row_;
    id receiver_;
    id subject_;
    const Installation* installation_ = nullptr;
    bool isSuperCall_ = false;
  };

  static void didRegister(id self, SEL, id application, id token) {
    const Callback callback(Row::didRegister, self, token);
    if (callback.isNew()) {
      logIntercepted("📲 [INTERCEPTED] didRegisterForRemoteNotifications");
      contained("zib_didRegister:deviceToken:", [&] {
        ZibMessaging::shared().didRegisterForRemoteNotifications(zib::bytesOf(token));
      });
    }
    if (callback.isForwarded()) callback.forward<void>(application, token);
  }

  static void didFailRegister(id self, SEL, id application, id error) {
    const Callback callback(Row::didFailRegister, self, error);
    if (callback.isNew()) {
      logIntercepted("❌ [INTERCEPTED] didFailToRegisterForRemoteNotifications");
      contained("zib_didFailRegister:error:", [&] {
        ZibMessaging::shared().didFailToRegisterForRemoteNotifications(
            zib::Error::fromNative(error));
      });
    }
    if (callback.isForwarded()) callback.forward<void>(application, error);
  }

  static BOOL openURL(id self, SEL, id application, id url, id options) {
    const Callback callback(Row::openURL, self, url);
    if (callback.isNew()) {
      contained("zib_openURL:url:options:", [&] {
        const zib::Utf8 text(zib::textOfURL(url));
        logIntercepted("🔗 [INTERCEPTED] application:open:options: ", text.view());
        trackUTMParameters(url, text.view());
      });
    }
    if (!callback.isForwarded()) return BOOL{1};
    return callback.forward<BOOL>(application, url, options);
  }

  // An empty set is never forwarded: there is nothing in it to open.
  static void sceneOpenURLContexts(id self, SEL, id scene, id contexts) {
    const Callback callback(Row::sceneOpenURL, self, contexts);
    bool isEmpty = false;
    contained("zib_scene:openURLContexts:", [&] {
      const std::vector<zib::Object> elements = zib::elementsOf(contexts);
      isEmpty = elements.empty();
      const auto url = isEmpty ? std::nullopt : zib::urlOfContext(elements.front().raw());
      if (!url || !callback.isNew()) return;
      const zib::Utf8 text(url->text());
      logIntercepted("🔗 [INTERCEPTED] scene:openURLContexts: ", text.view());
      trackUTMParameters(url->native(), text.view());
      ZibDeepLinkHandler::shared().handleURL(*url, "scene_delegate");
    });
    if (!isEmpty && callback.isForwarded()) callback.forward<void>(scene, contexts);
  }

  // The completion belongs to the system and has to be called once: by the host through the wrapper
  // if its method was replaced, and by the module only if it added the method.
  static void willPresent(id self, SEL, id center, id notification, BlockLayout* completion) {
    const Callback callback(Row::willPresent, self, notification);
    UInteger options = 0;
    if (callback.isNew()) {
      logIntercepted("🔔 [INTERCEPTED] willPresent notification");
      options = ZibMessaging::shared().willPresent(*zib::Borrowed<zib::Notification>(notification));
    } else {
      options = foregroundPresentationOptions();
    }
    using Completion = Block<void(UInteger)>;
    if (!callback.isForwarded()) {
      Completion::call(completion, options);
      return;
    }
    const auto wrapper = Completion::from(
        [completion = Completion::copied(completion)](UInteger chosen) { completion(chosen); });
    callback.forward<void>(center, notification, wrapper.raw());
  }

  // As above.
  static void didReceive(id self, SEL, id center, id response, BlockLayout* completion) {
    const Callback callback(Row::didReceive, self, response);
    if (callback.isNew()) {
      logIntercepted("👆 [INTERCEPTED] didReceive notification response");
      ZibMessaging::shared().didReceive(*zib::Borrowed<zib::NotificationResponse>(response));
    }
    using Completion = Block<void()>;
    if (!callback.isForwarded()) {
      Completion::call(completion);
      return;
    }
    const auto wrapper =
        Completion::from([completion = Completion::copied(completion)] { completion(); });
    callback.forward<void>(center, response, wrapper.raw());
  }

  static void fcmToken(id self, SEL, id messaging, id token) {
    const Callback callback(Row::fcmToken, self, token);
    if (callback.isNew()) {
      contained("zib_messaging:didReceiveRegistrationToken:", [&] {
        const bool isPresent = zib::isString(token);
        const zib::Utf8 text(zib::StringRef::of(token));
        logIntercepted("🔥 [INTERCEPTED] Firebase MessagingDelegate - FCM token: ",
                       isPresent ? shownOf(text.view()) : "nil", "...");
        if (isPresent) ZibMessaging::shared().setFCMToken(text.view());
      });
    }
    if (callback.isForwarded()) callback.forward<void>(messaging, token);
  }

  static zib::Class registerClass() {
    return zib::ClassBuilder("ZibSwizzleManager", zib::classNamed<"NSObject">())
        .method(at(Row::didRegister).interceptorSelector, &didRegister)
        .method(at(Row::didFailRegister).interceptorSelector, &didFailRegister)
        .method(at(Row::openURL).interceptorSelector, &openURL)
        .method(at(Row::sceneOpenURL).interceptorSelector, &sceneOpenURLContexts)
        .method(at(Row::willPresent).interceptorSelector, &willPresent)
        .method(at(Row::didReceive).interceptorSelector, &didReceive)
        .method(at(Row::fcmToken).interceptorSelector, &fcmToken)
        .registerClass();
  }
};

zib::Class ZibSwizzleManager::runtimeClass() {
  static const zib::Class cls = Interceptors::registerClass();
  return cls;
}
