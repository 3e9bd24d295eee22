#include "ZibMessaging/ZibDeepLinkHandler.h"

#include <array>

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Deferred.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/UIKit/Application.h"

using zib::ConstantString;
using zib::constantString;
using zib::contained;
using zib::logLine;

namespace {

// In the order in which they are searched.
constexpr std::array<ConstantString, 9> linkKeys{
    constantString<"url">,       constantString<"link">,         constantString<"click_action">,
    constantString<"deep_link">, constantString<"deeplink">,     constantString<"click_url">,
    constantString<"web_link">,  constantString<"redirect_url">, constantString<"action_url">,
};

// What campaign tools write for "no link".
constexpr std::string_view notApplicable = "NA";

constexpr std::string_view linePrefix = "ZibDeepLinkHandler: ";

// The first usable link decides, even if it turns out to be no URL: falling back to another key
// would open something that the campaign did not put first.
zib::StringRef findCandidate(const zib::Dictionary& userInfo) {
  if (userInfo.empty()) return {};
  for (const ConstantString& key : linkKeys) {
    const zib::StringRef text = userInfo.text(key);
    if (text && !text.equals("") && !text.equals(notApplicable)) return text;
  }
  return {};
}

void openInSystem(const zib::URL& url) {
  const auto application = zib::Application::shared();
  if (!application) {
    logLine(linePrefix, "Could not get UIApplication");
    return;
  }
  application->open(url, [](bool success) {
    contained("the completion of opening a URL",
              [&] { logLine(linePrefix, "URL open ", success ? "succeeded" : "failed"); });
  });
}

}  // namespace

ZibDeepLinkHandler& ZibDeepLinkHandler::shared() { return instance(); }

void ZibDeepLinkHandler::setURLDelegate(URLDelegate urlDelegate) {
  urlDelegate_.store(urlDelegate ? std::make_shared<const URLDelegate>(std::move(urlDelegate))
                                 : nullptr);
}

ZibDeepLinkHandler::URLDelegate ZibDeepLinkHandler::urlDelegate() const {
  const auto urlDelegate = urlDelegate_.load();
  return urlDelegate == nullptr ? URLDelegate() : *urlDelegate;
}

bool ZibDeepLinkHandler::handleNotificationURL(const zib::Dictionary& userInfo) noexcept {
  bool isHandled = false;
  contained("handleNotificationURL", [&] {
    const auto candidate = findCandidate(userInfo);
    if (!candidate) return;
    const auto url = zib::URL::parse(candidate);
    if (!url) return;
    logLine(linePrefix, "Found URL - ", zib::Utf8(candidate).view());
    isHandled = openURL(*url);
  });
  return isHandled;
}

bool ZibDeepLinkHandler::handleURL(const zib::URL& url, std::string_view source) noexcept {
  contained("handleURL", [&] {
    logLine("ZibDeepLinkHandler: URL from ", source, " - ", zib::Utf8(url.text()).view());
  });
  return true;
}

bool ZibDeepLinkHandler::openURL(const zib::URL& url) {
  if (zib::isAppExtension()) {
    logLine(linePrefix, "Cannot open URL in app extension");
    return false;
  }
  if (isHandledByHost(url)) {
    logLine(linePrefix, "Handled by urlDelegate");
    return true;
  }
  logLine(linePrefix, "Opening URL - ", zib::Utf8(url.text()).view());
  zib::containedOnMain("opening a URL", [url] { openInSystem(url); });
  return true;
}

bool ZibDeepLinkHandler::isHandledByHost(const zib::URL& url) const {
  const auto urlDelegate = urlDelegate_.load();
  bool isHandled = false;
  if (urlDelegate != nullptr) contained("urlDelegate", [&] { isHandled = (*urlDelegate)(url); });
  return isHandled;
}
