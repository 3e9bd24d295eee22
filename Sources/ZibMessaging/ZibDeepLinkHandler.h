// Finds the link in a notification and opens it.

#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "ZibMessaging/Private/Guarded.h"
#include "ZibMessaging/Private/SharedInstance.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/URL.h"

// One instance, for the life of the process. Any thread; the system is asked to open a link on the
// main one.
class ZibDeepLinkHandler final : public zib::SharedInstance<ZibDeepLinkHandler> {
 public:
  // True means that the host has handled the link, and it must not be opened.
  using URLDelegate = std::function<bool(const zib::URL&)>;

  static ZibDeepLinkHandler& shared() noexcept;

  explicit ZibDeepLinkHandler(Key) {}

  // The host's first chance at each link, called on the thread that handles the notification. An
  // empty function takes it back. Meant to be set before notifications arrive; setting it while one
  // is handled is safe and leaves that one with the value that it read.
  void setURLDelegate(URLDelegate urlDelegate) noexcept;
  // Empty when there is none.
  [[nodiscard]] URLDelegate urlDelegate() const noexcept;
  [[nodiscard]] bool hasURLDelegate() const noexcept;

  // Opens the link of a tapped notification: the first usable one of nine top-level keys. True when
  // a link was handled by the host or handed on for opening; the outcome of opening is only logged.
  bool handleNotificationURL(const zib::Dictionary& userInfo) noexcept;

  // Records a link that reached the app by another route. Always true; neither calls the host's
  // callback nor opens anything, since the system has opened the link already.
  bool handleURL(const zib::URL& url, std::string_view source) noexcept;

 private:
  // `text` is the URL's.
  bool openURL(const zib::URL& url, std::string_view text);
  bool isHandledByHost(const zib::URL& url) const;

  zib::Guarded<std::shared_ptr<const URLDelegate>> urlDelegate_;
};
