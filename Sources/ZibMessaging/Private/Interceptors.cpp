// Each function runs with the host's delegate as its receiver, does the module's own handling
// first, and then calls the host's implementation with the host's own receiver, selector and
// arguments, if there was one to replace. What the host's implementation throws passes through.

#include "ZibMessaging/Private/Interceptors.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "ZibMessaging/Private/CallbackInProgress.h"
#include "ZibMessaging/Private/CampaignParameters.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Installation.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/OlderURLMethods.h"
#include "ZibMessaging/Private/PresentationOptions.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Forwarding.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/UIKit/Scenes.h"

namespace zib {

using objc::BOOL;
using objc::id;
using objc::IMP;
using objc::SEL;
using objc::UInteger;

namespace {

// What is called after the module's own handling, or nothing.
struct ReplacedMethod {
  Destination destination;
  Selector selector;

  explicit operator bool() const noexcept { return destination.implementation != nullptr; }
  template <class Result, class... Arguments>
  Result call(Arguments... arguments) const {
    return callImplementation<Result>(destination.implementation, destination.receiver, selector,
                                      arguments...);
  }
};

// One callback on its way through an interceptor.
class Intercepted {
 public:
  Intercepted(Row row, const Installation& installation, id receiver, id subject)
      : installation_(installation),
        row_(row),
        receiver_(Object::retained(receiver)),
        inProgress_(row, subject, receiver, installation) {}

  [[nodiscard]] bool isNew() const noexcept { return inProgress_.isNew(); }

  // After the module's own handling.
  [[nodiscard]] ReplacedMethod hostMethod() const {
    if (isCircle()) {
      reportCircle(interceptionOf(row_).hostSelector);
      return {{}, selector()};
    }
    return {destination(), selector()};
  }

  // Whether the host is handed the callback as an invocation. An object that takes these says yes
  // to every message that its class has a method for, whoever may be behind it.
  [[nodiscard]] bool mayReachNobody(const ReplacedMethod& host) const noexcept {
    return installation_.kind() != Installed::swapped &&
           host.destination.receiver == receiver_.raw();
  }

  [[nodiscard]] bool isCircle() const noexcept { return inProgress_.depth() > maximumDepth; }
  // Whether a circle that ends here has called the completion already.
  [[nodiscard]] bool isCompleted() const noexcept {
    return isCircle() && inProgress_.isCompleted();
  }

 private:
  [[nodiscard]] Selector selector() const noexcept { return installation_.selector(); }
  [[nodiscard]] Destination destination() const {
    switch (installation_.kind()) {
      case Installed::swapped:
        return {installation_.original(), receiver_.raw()};
      case Installed::forwarding:
        return forwardedTo(receiver_.raw(), selector(), installation_.original());
      case Installed::added:
        return namedByNow(receiver_.raw(), selector());
      case Installed::nothing:
        break;
    }
    return {};
  }

  const Installation& installation_;
  Row row_;
  // The delegate may be let go while it is called.
  Object receiver_;
  CallbackInProgress inProgress_;
};

void complete(const Block<void(UInteger)>& completion) {
  completion(foregroundPresentationOptions());
}
void complete(const Block<void()>& completion) { completion(); }

// The system's completion as the host gets it. Where the host may be nobody, it is called by the
// module once all who could call it have let it go.
template <Row row, class... Arguments>
class HandedOn {
 public:
  HandedOn(BlockLayout* completion, id subject, bool mayReachNobody)
      : completion_(Block<void(Arguments...)>::copied(completion)),
        subject_(subject),
        isOwed_(mayReachNobody) {}
  HandedOn(HandedOn&& other) noexcept
      : completion_(std::move(other.completion_)),
        subject_(other.subject_),
        isOwed_(std::exchange(other.isOwed_, false)) {}
  HandedOn& operator=(HandedOn&&) = delete;
  ~HandedOn() {
    if (isOwed_) contained("a completion", [&] { complete(completion_); });
  }

  void operator()(Arguments... arguments) {
    isOwed_ = false;
    CallbackInProgress::noteCompletion(row, subject_);
    completion_(arguments...);
  }

 private:
  Block<void(Arguments...)> completion_;
  id subject_;
  bool isOwed_;
};

}  // namespace

struct Interceptors {
  static void didRegister(const Installation& installation, id self, id application, id token) {
    const Intercepted callback(Row::didRegister, installation, self, token);
    if (callback.isNew()) {
      const RecordedCall call(Row::didRegister, token);
      logLine("📲 [INTERCEPTED] didRegisterForRemoteNotifications");
      containedInPlace("zib_didRegister:deviceToken:", [&] {
        const id data = cast<"NSData">(token);
        if (data == nullptr) return;
        ZibMessaging::shared().takeDeviceToken(bytesOf(data));
      });
    }
    if (const ReplacedMethod host = callback.hostMethod()) host.call<void>(application, token);
  }

  static void didFailRegister(const Installation& installation, id self, id application, id error) {
    const Intercepted callback(Row::didFailRegister, installation, self, error);
    if (callback.isNew()) {
      const RecordedCall call(Row::didFailRegister, error);
      logLine("❌ [INTERCEPTED] didFailToRegisterForRemoteNotifications");
      contained("zib_didFailRegister:error:", [&] {
        ZibMessaging::shared().didFailToRegisterForRemoteNotifications(Error::fromNative(error));
      });
    }
    if (const ReplacedMethod host = callback.hostMethod()) host.call<void>(application, error);
  }

  static BOOL openURL(const Installation& installation, id self, id application, id url,
                      id options) {
    const Intercepted callback(Row::openURL, installation, self, url);
    if (callback.isNew()) {
      const RecordedCall call(Row::openURL, url, options);
      contained("zib_openURL:url:options:", [&] {
        const Borrowed<URL> opened(cast<"NSURL">(url));
        const Utf8 text(opened->text());
        logLine("🔗 [INTERCEPTED] application:open:options: ", text.view());
        logCampaignParameters(*opened, text.view());
      });
    }
    if (const ReplacedMethod host = callback.hostMethod()) {
      return host.call<BOOL>(application, url, options);
    }
    return callback.isCircle() ? BOOL{1} : openWithOlderMethod(self, application, url, options);
  }

  // An empty set is never forwarded: there is nothing in it to open.
  static void sceneOpenURLContexts(const Installation& installation, id self, id scene,
                                   id contexts) {
    const Intercepted callback(Row::sceneOpenURL, installation, self, contexts);
    bool isEmpty = false;
    contained("zib_scene:openURLContexts:", [&] {
      const id first = *elements(contexts).begin();
      isEmpty = first == nullptr;
      if (!callback.isNew() || isEmpty) return;
      const RecordedCall call(Row::sceneOpenURL, scene, contexts);
      const auto url = urlOfContext(first);
      if (!url) return;
      const Utf8 text(url->text());
      logLine("🔗 [INTERCEPTED] scene:openURLContexts: ", text.view());
      logCampaignParameters(*url, text.view());
      ZibDeepLinkHandler::shared().handleURL(*url, "scene_delegate");
    });
    if (isEmpty) return;
    if (const ReplacedMethod host = callback.hostMethod()) host.call<void>(scene, contexts);
  }

  // The completion belongs to the system and has to be called once: by the host through the wrapper
  // if its method was replaced, and by the module only if it added the method.
  static void willPresent(const Installation& installation, id self, id center, id notification,
                          BlockLayout* completion) {
    const Intercepted callback(Row::willPresent, installation, self, notification);
    if (callback.isNew()) {
      const RecordedCall call(Row::willPresent, notification);
      logLine("🔔 [INTERCEPTED] willPresent notification");
      ZibMessaging::shared().handlePresentation(*Borrowed<Notification>(notification));
    }
    using Completion = Block<void(UInteger)>;
    const ReplacedMethod host = callback.hostMethod();
    if (!host) {
      if (!callback.isCompleted()) Completion::call(completion, foregroundPresentationOptions());
      return;
    }
    const auto wrapper = Completion::from(HandedOn<Row::willPresent, UInteger>(
        completion, notification, callback.mayReachNobody(host)));
    host.call<void>(center, notification, wrapper.raw());
  }

  // As willPresent().
  static void didReceive(const Installation& installation, id self, id center, id response,
                         BlockLayout* completion) {
    const Intercepted callback(Row::didReceive, installation, self, response);
    if (callback.isNew()) {
      const RecordedCall call(Row::didReceive, response);
      logLine("👆 [INTERCEPTED] didReceive notification response");
      ZibMessaging::shared().handleResponse(*Borrowed<NotificationResponse>(response));
    }
    using Completion = Block<void()>;
    const ReplacedMethod host = callback.hostMethod();
    if (!host) {
      if (!callback.isCompleted()) Completion::call(completion);
      return;
    }
    const auto wrapper = Completion::from(
        HandedOn<Row::didReceive>(completion, response, callback.mayReachNobody(host)));
    host.call<void>(center, response, wrapper.raw());
  }

  static void fcmToken(const Installation& installation, id self, id messaging, id token) {
    const Intercepted callback(Row::fcmToken, installation, self, token);
    if (callback.isNew()) {
      const RecordedCall call(Row::fcmToken, token);
      containedInPlace("zib_messaging:didReceiveRegistrationToken:", [&] {
        const StringRef given = StringRef::of(token);
        const Utf8 text(given);
        logLine("🔥 [INTERCEPTED] Firebase MessagingDelegate - FCM token: ",
                given ? shownOf(text.view()) : "nil", "...");
        if (given) ZibMessaging::shared().takeFCMToken(text.view());
      });
    }
    if (const ReplacedMethod host = callback.hostMethod()) host.call<void>(messaging, token);
  }
};

namespace {

// What the last function was called for, which several classes share. A `super` call comes from a
// class below the one that it is meant for.
const Installation& searched(Row row, id receiver) noexcept {
  const Installation* found = nullptr;
  if (const Installation* const running = CallbackInProgress::latestFor(row, receiver)) {
    found = sharedInstallation(row, running->owner().superclass());
  }
  if (found == nullptr) found = sharedInstallation(row, Class::ofObject(receiver));
  if (found != nullptr) return *found;
  // Another library has moved the function to this class: of several, whose it was is not known.
  static constinit Installation unknown;
  const Installation& only = installationAt(row, functionsOfARow - 1);
  return only.next() == nullptr ? only : unknown;
}

// A method that leads to `Handle` with what is installed on its class, which its number tells.
template <auto Handle>
struct Function;
template <class Result, class... Arguments, Result (*Handle)(const Installation&, id, Arguments...)>
struct Function<Handle> {
  template <Row row, std::size_t Number>
  static Result numbered(id self, SEL, Arguments... arguments) {
    if constexpr (Number + 1 < functionsOfARow) {
      return Handle(installationAt(row, Number), self, arguments...);
    } else {
      return Handle(searched(row, self), self, arguments...);
    }
  }

  template <Row row>
  static constexpr auto all = []<std::size_t... Number>(std::index_sequence<Number...>) {
    return std::array{&numbered<row, Number>...};
  }
  (std::make_index_sequence<functionsOfARow>());
};

template <Row row, auto Handle>
struct RowFunctions {
  static IMP at(std::size_t number) {
    return objc::functionCast<IMP>(Function<Handle>::template all<row>[number]);
  }
  static void addTo(ClassBuilder& builder) noexcept {
    builder.method(interceptionOf(row).interceptorSelector,
                   Function<Handle>::template all<row>.front());
  }
};

struct FunctionsOfARow {
  IMP (*at)(std::size_t number);
  void (*addTo)(ClassBuilder& builder) noexcept;
};
template <Row row, auto Handle>
constexpr FunctionsOfARow functionsOf{&RowFunctions<row, Handle>::at,
                                      &RowFunctions<row, Handle>::addTo};

constexpr std::array<FunctionsOfARow, rowCount> functions{
    functionsOf<Row::didRegister, &Interceptors::didRegister>,
    functionsOf<Row::didFailRegister, &Interceptors::didFailRegister>,
    functionsOf<Row::openURL, &Interceptors::openURL>,
    functionsOf<Row::sceneOpenURL, &Interceptors::sceneOpenURLContexts>,
    functionsOf<Row::willPresent, &Interceptors::willPresent>,
    functionsOf<Row::didReceive, &Interceptors::didReceive>,
    functionsOf<Row::fcmToken, &Interceptors::fcmToken>,
};

Class registerInterceptorClass() {
  ClassBuilder builder("ZibSwizzleManager", classNamed<"NSObject">());
  for (const FunctionsOfARow& row : functions) row.addTo(builder);
  return builder.registerClass();
}

}  // namespace

Class interceptorClass() {
  static const Class cls = registerInterceptorClass();
  return cls;
}

Method interceptorMethod(Row row) {
  const char* const selector = interceptionOf(row).interceptorSelector;
  const Method method = interceptorClass().instanceMethod(Selector(selector));
  if (!method) {
    std::fprintf(stderr, "ZibMessaging: the interceptor %s is missing\n", selector);
    std::abort();
  }
  return method;
}

IMP interceptorFunction(Row row, std::size_t number) {
  return functions[static_cast<std::size_t>(row)].at(number);
}

bool isInterceptor(Row row, IMP function) {
  return installationOf(row, function, Class()) != nullptr;
}

const Installation* installationOf(Row row, IMP function, Class owner) {
  for (std::size_t number = 0; number < functionsOfARow; ++number) {
    if (interceptorFunction(row, number) != function) continue;
    const Installation* const shared =
        number + 1 < functionsOfARow ? nullptr : sharedInstallation(row, owner);
    return shared == nullptr ? &installationAt(row, number) : shared;
  }
  return nullptr;
}

}  // namespace zib
