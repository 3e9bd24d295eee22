// Stand-ins for UIKit: the application object, window scenes, and what they are asked to open.
//
// What the host sets goes through here and leaves no trace in the timeline; what the module asks of
// the classes is recorded.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "Simulator/Json/Names.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim::uikit {

enum class ApplicationPresence { present, noClass, noInstance, noOpenURL, late };

// When the application asks its delegate which optional methods it has: once, when it is set, or
// each time that it is about to call one.
enum class AsksDelegate { whenSet, eachTime };

// Of the classes that install() registers.
std::vector<std::string_view> classNames();

// Registers the classes. Once in a process.
void install(ApplicationPresence presence, bool opensURLs,
             AsksDelegate asksDelegate = AsksDelegate::whenSet);

// The application object, or nil.
zib::objc::id application();
// An application that is late appears, asks its delegate, and says that it has launched; any other
// only says so.
void finishLaunching();

// What the host sets it keeps alive; the application itself does not.
void setAppDelegate(zib::Object delegate);
zib::objc::id appDelegate();

// Connects a scene, and says so; one without a window is no UIWindowScene. Scenes are numbered from
// 0.
void connectScene(bool hasWindow, const zib::Object& delegate);
zib::objc::id scene(std::size_t index);

// The set of UIOpenURLContext that a scene delegate gets.
zib::Object makeURLContexts(const std::vector<zib::Object>& urls);

// The system calls a delegate. False where there is none that responds.
bool deliverDeviceToken(std::span<const std::uint8_t> token);
bool deliverRegistrationFailure(const std::optional<zib::Error>& error);
// What the delegate answers, by the newest method for it that it has; none where it has none.
std::optional<bool> deliverURL(const zib::URL& url, const zib::ValueMap& options);
bool deliverURLContexts(std::size_t index, const std::vector<zib::URL>& urls);

}  // namespace sim::uikit

template <>
struct sim::Names<sim::uikit::ApplicationPresence> {
  using enum uikit::ApplicationPresence;
  static constexpr Named<uikit::ApplicationPresence> rows[] = {{present, "present"},
                                                               {noClass, "noClass"},
                                                               {noInstance, "noInstance"},
                                                               {noOpenURL, "noOpenURL"},
                                                               {late, "late"}};
};

template <>
struct sim::Names<sim::uikit::AsksDelegate> {
  using enum uikit::AsksDelegate;
  static constexpr Named<uikit::AsksDelegate> rows[] = {{whenSet, "whenSet"},
                                                        {eachTime, "eachTime"}};
};
