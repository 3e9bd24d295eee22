// Stand-ins for UIKit: the application object, window scenes, and what they are asked to open.
//
// What the host sets goes through here and leaves no trace in the timeline; what the module asks of
// the classes is recorded.

#pragma once

#include <cstddef>
#include <vector>

#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim::uikit {

enum class ApplicationPresence { present, noClass, noInstance, noOpenURL };

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

}  // namespace sim::uikit
