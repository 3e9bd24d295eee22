#include "ZibMessaging/ZibDeepLinkHandler.h"

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Deferred.h"
#include "ZibMessaging/Private/LinkSearch.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/UIKit/Application.h"

using zib::contained;
using zib::containedOr;
using zib::LinePart;
using zib::logLine;

namespace {

constexpr LinePart linePrefix = "ZibDeepLinkHandler: ";

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

ZibDeepLinkHandler& ZibDeepLinkHandler::shared() noexcept { return instance(); }

void ZibDeepLinkHandler::setURLDelegate(URLDelegate urlDelegate) noexcept {
  contained("setURLDelegate", [&] {
    urlDelegate_.store(urlDelegate ? std::make_shared<const URLDelegate>(std::move(urlDelegate))
                                   : nullptr);
  });
}

ZibDeepLinkHandler::URLDelegate ZibDeepLinkHandler::urlDelegate() const noexcept {
  return containedOr(URLDelegate(), "urlDelegate", [&] {
    const auto urlDelegate = urlDelegate_.load();
    return urlDelegate == nullptr ? URLDelegate() : *urlDelegate;
  });
}

bool ZibDeepLinkHandler::hasURLDelegate() const noexcept {
  return urlDelegate_.read([](const auto& urlDelegate) { return urlDelegate != nullptr; });
}

bool ZibDeepLinkHandler::handleNotificationURL(const zib::Dictionary& userInfo) noexcept {
  const zib::RecordedCall call("handleNotificationURL", [&] {
    return zib::ValueMap{{"userInfo", zib::recording::valuesOf(userInfo)}};
  });
  return containedOr(false, "handleNotificationURL", [&] {
    const auto candidate = zib::findLink(userInfo);
    if (!candidate) return false;
    const zib::Link link(candidate);
    if (!link.url()) return false;
    logLine(linePrefix, "Found URL - ", link.sent());
    return openURL(*link.url(), link.text());
  });
}

bool ZibDeepLinkHandler::handleURL(const zib::URL& url, std::string_view source) noexcept {
  const zib::RecordedCall call("handleURL", [&] {
    return zib::ValueMap{{"url", url.text().utf8()}, {"source", source}};
  });
  contained("handleURL", [&] {
    logLine("ZibDeepLinkHandler: URL from ", source, " - ", zib::Utf8(url.text()).view());
  });
  return true;
}

bool ZibDeepLinkHandler::openURL(const zib::URL& url, std::string_view text) {
  if (zib::isAppExtension()) {
    logLine(linePrefix, "Cannot open URL in app extension");
    return false;
  }
  if (isHandledByHost(url)) {
    logLine(linePrefix, "Handled by urlDelegate");
    return true;
  }
  logLine(linePrefix, "Opening URL - ", text);
  zib::containedOnMain("opening a URL", [url = url] { openInSystem(url); });
  return true;
}

bool ZibDeepLinkHandler::isHandledByHost(const zib::URL& url) const {
  const auto urlDelegate = urlDelegate_.load();
  if (urlDelegate == nullptr) return false;
  const bool isHandled = containedOr(false, "urlDelegate", [&] {
    const zib::HostsTurn turn;
    return (*urlDelegate)(url);
  });
  zib::recording::told(zib::recording::urlDelegateAnswered, isHandled);
  return isHandled;
}
