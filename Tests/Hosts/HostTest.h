// A device with one host in it, and what happens there as one list of short lines.

#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "Hosts.h"
#include "Simulator/Timeline/Timeline.h"
#include "Tests/Support/Delegates.h"
#include "Tests/Support/Device.h"
#include "ZibC/zib.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URL.h"

namespace hosts {

using Lines = std::vector<std::string>;
using zib::Object;
using zib::objc::id;
using zib::objc::UInteger;

// "handled" for the first line of each callback that the module handles, "event …", "error …", what
// hosts tell hostDid(), and the completions.
class HostTest : public testing::Test {
 protected:
  Lines happened() {
    Lines lines;
    for (const sim::Json& entry : device_.entries()) {
      const std::string kind = entry.at("kind");
      if (kind == "host") lines.push_back(entry.at("did"));
      if (kind == "completion") lines.push_back(entry.at("of"));
      if (kind == "event")
        lines.push_back("event " + entry.at("data").at("event_type").get<std::string>());
      if (kind == "log") add(lines, entry.at("level"), entry.at("message"));
    }
    device_.forget();
    return lines;
  }

  static Object make(const char* className) { return Object::adopted(makeHost(className)); }

  void configure() {
    zib_messaging_configure(Device::application().native());
    device_.forget();
  }

  // With a new delegate of notifications, of that class.
  Object configureWith(const char* className) {
    Object delegate = make(className);
    sim::usernotifications::setDelegate(delegate);
    configure();
    return delegate;
  }

  static void open(const Object& scene, std::initializer_list<const char*> links) {
    std::vector<Object> urls;
    for (const char* link : links) {
      urls.push_back(Object::retained(zib::URL::parse(link)->native()));
    }
    test::openURLContexts(scene.raw(), sim::uikit::scene(0),
                          sim::uikit::makeURLContexts(urls).raw());
  }
  static void present(const Object& delegate) {
    test::willPresent(delegate.raw(),
                      sim::usernotifications::makeNotification({{"club", "gold"}}).raw(),
                      zib::Block<void(UInteger)>::from([](UInteger options) {
                        record("completion", "of", "presented with " + std::to_string(options));
                      }));
  }
  static void tap(const Object& delegate) {
    test::didReceive(delegate.raw(),
                     sim::usernotifications::makeResponse({{"club", "gold"}}, "tap").raw(),
                     zib::Block<void()>::from([] { record("completion", "of", "completed"); }));
  }
  static void record(const char* kind, const char* field, const std::string& value) {
    sim::Timeline::shared().add(kind, {{field, value}});
  }

  using Device = test::Device;
  Device device_;

 private:
  static void add(Lines& lines, const std::string& level, const std::string& message) {
    if (level == "error") lines.push_back("error " + message);
    if (message.find("[INTERCEPTED]") != std::string::npos) lines.emplace_back("handled");
  }
};

}  // namespace hosts
