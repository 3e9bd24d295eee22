// What is measured: one callback or operation each, as its floor and as the module do it.

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

struct Case {
  std::string name;
  std::function<void()> floor;
  std::function<void()> ours;
  // What else the case is held against, or none, and what that is called.
  std::function<void()> beside = {};
  std::string_view besideName = {};
  // The most that `ours` may cost, as a multiple of the floor; 0 where there is no target.
  double target = 0;
  // Run before and after the case is measured.
  std::function<void()> setUp = {};
  std::function<void()> tearDown = {};
};

// All but the start of the process, which needs a process for each sample.
const std::vector<Case>& cases();

// What the cases presuppose: both sides are configured and have a device token, without which an
// FCM token is dropped. Calling it again does nothing.
void configureBoth();

// The start: to be called in a process that has the device and nothing else.
inline constexpr std::string_view configureCase = "configure";
inline constexpr double configureTarget = 2;
void configureFloor();
void configureOurs();

}  // namespace bench
