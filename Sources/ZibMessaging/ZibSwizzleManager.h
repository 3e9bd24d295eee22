// Automatic integration: puts the module between the system and the host's delegates.
//
// Not for hosts: ZibMessaging::configure() decides whether it runs.

#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/UIKit/Application.h"

// One instance, for the life of the process. Delegates are found and methods installed on the main
// thread only; the interceptors run on whatever thread the system calls them and read the state
// without locks. Installed methods are never taken out again.
class ZibSwizzleManager final : public std::enable_shared_from_this<ZibSwizzleManager> {
  struct Key {
    explicit Key() = default;
  };

 public:
  static ZibSwizzleManager& shared();

  explicit ZibSwizzleManager(Key) {}

  // The master switch, on by default. The notification entry points of ZibMessaging read it too.
  [[nodiscard]] bool isSwizzlingEnabled() const noexcept { return isSwizzlingEnabled_; }
  void setSwizzlingEnabled(bool enabled) noexcept { isSwizzlingEnabled_ = enabled; }

  // Runs the pass over the host's delegates, at most once in a process, on the main thread; from
  // another thread it waits for that. Delegates that are not there yet are looked for once more
  // later.
  void setupAutoSwizzling() noexcept;

 private:
  friend struct ZibTestSeam;
  struct Interceptors;

  // The rows of the table of interceptions.
  enum class Row : std::size_t {
    didRegister,
    didFailRegister,
    openURL,
    sceneOpenURL,
    willPresent,
    didReceive,
    fcmToken,
  };
  static constexpr std::size_t rowCount = 7;

  struct Interception {
    const char* hostSelector;
    const char* interceptorSelector;
    const char* logName;
    // The host's implementation that was saved last, and whether there is one: a method that the
    // host lacked was added, and then there is nothing to forward to.
    std::atomic<zib::objc::IMP> ZibSwizzleManager::*original;
    std::atomic<bool> ZibSwizzleManager::*didSwap;
  };
  static const std::array<Interception, rowCount> interceptions;

  // What was installed on one class: its own implementation before, or none if it had none. Never
  // freed, since interceptors read the list without a lock.
  struct Installation {
    zib::Class owner;
    zib::Selector selector;
    zib::objc::IMP original;
    const Installation* next;
  };

  // A call of a host's implementation in progress on this thread. A host's method that calls
  // `super` may reach the interceptor again when a superclass is intercepted too; this tells such a
  // call from a new callback.
  struct Forwarding;

  static const Interception& at(Row row) { return interceptions[static_cast<std::size_t>(row)]; }
  static std::shared_ptr<ZibSwizzleManager>& slot();
  static zib::Class runtimeClass();
  static zib::Method interceptorMethod(const Interception& interception);

  void runPass();
  void swizzleAppDelegate();
  void swizzleSceneDelegate();
  void retrySceneDelegateSwizzling();
  void swizzleNotificationCenterDelegate();
  void retryNotificationDelegateSwizzling();
  void swizzleNotificationDelegateMethods(zib::objc::id delegate);
  void swizzleFirebaseMessagingDelegate();
  void retryFirebaseMessagingSwizzling();
  void lookAgain(double seconds, void (ZibSwizzleManager::*retry)());
  template <class Use>
  static void forEachSceneDelegate(const zib::Application& application, Use use);
  static std::optional<zib::Application> sharedApplication();

  void addOrSwap(Row row, zib::objc::id delegate);
  bool swapIfPresent(Row row, zib::objc::id delegate);
  void swap(Row row, zib::Class delegateClass, zib::Method hostMethod);
  void add(Row row, zib::Class delegateClass);
  void remember(Row row, zib::Class owner, zib::objc::IMP original);
  [[nodiscard]] const Installation* findInstallation(Row row, zib::Class from) const;

  // `text` is the URL's own, which every caller has read already.
  static void trackUTMParameters(zib::objc::id url, std::string_view text);

  std::atomic<bool> isSwizzlingEnabled_{true};
  std::atomic<bool> hasSwizzled_{false};
  std::atomic<zib::objc::IMP> originalDidRegisterIMP_{nullptr};
  std::atomic<zib::objc::IMP> originalDidFailRegisterIMP_{nullptr};
  std::atomic<zib::objc::IMP> originalOpenURLIMP_{nullptr};
  std::atomic<zib::objc::IMP> originalWillPresentIMP_{nullptr};
  std::atomic<zib::objc::IMP> originalDidReceiveIMP_{nullptr};
  std::atomic<zib::objc::IMP> originalSceneOpenURLIMP_{nullptr};
  std::atomic<zib::objc::IMP> originalFCMTokenIMP_{nullptr};
  std::atomic<bool> didSwapDidRegister_{false};
  std::atomic<bool> didSwapDidFailRegister_{false};
  std::atomic<bool> didSwapOpenURL_{false};
  std::atomic<bool> didSwapWillPresent_{false};
  std::atomic<bool> didSwapDidReceive_{false};
  std::atomic<bool> didSwapSceneOpenURL_{false};
  std::atomic<bool> didSwapFCMToken_{false};
  std::array<std::atomic<const Installation*>, rowCount> installations_{};
  // Most hosts have one class for each row, so the first needs no memory of its own.
  std::array<std::optional<const Installation>, rowCount> firstInstallations_;
};
