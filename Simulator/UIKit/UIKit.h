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

enum class ApplicationPresence { present, noClass, noInstance, noOpenURL };

// Of the classes that install() registers.
std::vector<std::string_view> classNames();

// Registers the classes. Once in a process.
void install(ApplicationPresence presence, bool opensURLs);

// The application object, or nil.
zib::objc::id application();

void setAppDelegate(zib::Object delegate);
zib::objc::id appDelegate();

// Connects a scene; one without a window is no UIWindowScene. Scenes are numbered from 0.
void connectScene(bool hasWindow, const zib::Object& delegate);
zib::objc::id scene(std::size_t index);

// The set of UIOpenURLContext that a scene delegate gets.
zib::Object makeURLContexts(const std::vector<zib::Object>& urls);

// The system calls a delegate, if it responds.
void deliverDeviceToken(std::span<const std::uint8_t> token);
void deliverRegistrationFailure(const std::optional<zib::Error>& error);
// What the delegate answers.
std::optional<bool> deliverURL(const zib::URL& url, const zib::ValueMap& options);
void deliverURLContexts(std::size_t scene, const std::vector<zib::URL>& urls);

}  // namespace sim::uikit

template <>
struct sim::Names<sim::uikit::ApplicationPresence> {
  using enum uikit::ApplicationPresence;
  static constexpr Named<uikit::ApplicationPresence> rows[] = {{present, "present"},
                                                               {noClass, "noClass"},
                                                               {noInstance, "noInstance"},
                                                               {noOpenURL, "noOpenURL"}};
};
