#include <algorithm>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "Tests/Endurance/CountingCore.h"
#include "Tests/Endurance/Sequence.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace endurance {
namespace {

using zib::Block;
using zib::Class;
using zib::classNamed;
using zib::Object;
using zib::Selector;
using zib::send;

class Player {
 public:
  Player(const Sequence& sequence, bool hasModule) : sequence_(sequence), hasModule_(hasModule) {
    // The first of them, without the subclasses that come later.
    for (const ClassPlan& plan : sequence.classes) {
      if (plan.name.starts_with("EnduranceHost")) registerClass(plan);
    }
    for (std::size_t owner = 0; owner < ownerCount; ++owner) makeDelegate(owner);
    sim::uikit::setAppDelegate(delegates_[application]);
    sim::usernotifications::setDelegate(delegates_[notificationCenter]);
    sim::uikit::connectScene(true, delegates_[scene]);
    sim::firebase::set({});
    sim::firebase::setDelegate(delegates_[firebase]);
    CountingCore::install(events_);
  }

  std::vector<Outcome> play() {
    for (const Step& step : sequence_.steps) {
      const zib::AutoreleasePool pool;
      playStep(step);
      sim::Scheduler::shared().drain();
    }
    return std::move(outcomes_);
  }

 private:
  void registerClass(const ClassPlan& plan) {
    const Class superclass = plan.superclass
                                 ? Class::named(sequence_.classes[*plan.superclass].name.c_str())
                                 : classNamed<"NSObject">();
    Class cls(zib::objc::allocateClassPair(superclass.raw(), plan.name.c_str(), 0));
    for (const std::size_t index : plan.implements) {
      const Row& row = rows()[index];
      cls.addMethod(Selector(row.selector), row.role[plan.number].host, row.types);
    }
    if (plan.overrides) {
      const Row& row = rows()[*plan.overrides];
      const Role& role = row.role[plan.number];
      cls.addMethod(Selector(row.selector), role.overriding, row.types);
      *role.subclass = cls;
    }
    zib::objc::registerClassPair(cls.raw());
  }

  void makeDelegate(std::size_t owner) {
    if (owner == notificationCenter && sequence_.isOneObjectBoth) {
      delegates_[owner] = delegates_[application];
      return;
    }
    const std::string& name = sequence_.classes[sequence_.classOf[owner]].name;
    delegates_[owner] =
        Object::adopted(send<id>(Class::named(name.c_str()).object(), zib::selector<"new">()));
  }

  void playStep(const Step& step) {
    const Row& row = rows()[step.row];
    const Role& role = row.role[step.number % roles];
    switch (step.kind) {
      case Step::Kind::configure:
        if (hasModule_) {
          ZibMessaging::shared().configure(zib::Application::retained(sim::uikit::application()));
        }
        break;
      case Step::Kind::advance:
        sim::Scheduler::shared().advanceTo(sim::Scheduler::shared().now() +
                                           sim::inNanoseconds(0.6));
        break;
      case Step::Kind::callback:
        outcomes_.push_back(callBack(step));
        break;
      case Step::Kind::exchange:
        return exchange(step, row, role);
      case Step::Kind::replace:
        return replace(step, row, role);
      case Step::Kind::restore:
        return restore(step);
      case Step::Kind::subclass:
        registerClass(sequence_.classes[step.number]);
        return setClass(step.owner, Class::named(sequence_.classes[step.number].name.c_str()));
      case Step::Kind::observe:
        return observe(step.owner);
      case Step::Kind::unobserve:
        return setClass(step.owner, observed_[step.owner]);
    }
  }

  // By the object's own answer, as other swizzlers ask.
  [[nodiscard]] Class visibleClass(std::size_t owner) const {
    return Class(send<zib::objc::Class>(delegates_[owner].raw(), zib::selector<"class">()));
  }

  void exchange(const Step& step, const Row& row, const Role& role) const {
    Class cls = visibleClass(step.owner);
    const Selector selector(row.selector);
    const Selector own(("swizzler" + std::to_string(step.number) + "_" + row.selector).c_str());
    *role.exchanged = own;
    const zib::Method before = cls.instanceMethod(selector);
    const IMP original = before ? before.implementation() : nullptr;
    if (cls.addMethod(selector, role.exchanging, row.types)) {
      cls.addMethod(own, original != nullptr ? original : role.exchanging, row.types);
      return;
    }
    // Both after both are there: each is read anew, as an exchange does.
    cls.addMethod(own, original, row.types);
    cls.instanceMethod(selector).setImplementation(role.exchanging);
  }

  void replace(const Step& step, const Row& row, const Role& role) {
    const zib::Method method = visibleClass(step.owner).instanceMethod(Selector(row.selector));
    *role.saved = method.implementation();
    method.setImplementation(role.replacing);
    replaced_.push_back({step.row, step.number, method});
  }

  void restore(const Step& step) {
    for (const Replaced& each : replaced_) {
      if (each.row != step.row || each.number != step.number) continue;
      each.method.setImplementation(*rows()[step.row].role[step.number].saved);
    }
  }

  void setClass(std::size_t owner, Class cls) const {
    *reinterpret_cast<zib::objc::Class*>(delegates_[owner].raw()) = cls.raw();
  }

  // A subclass that hides itself, as key-value observation has it.
  void observe(std::size_t owner) {
    const Class cls = Class::ofObject(delegates_[owner].raw());
    observed_[owner] = cls;
    const std::string name = std::string("EnduranceObserved") + cls.name();
    Class hidden = Class::named(name.c_str());
    if (!hidden) {
      hidden = Class(zib::objc::allocateClassPair(cls.raw(), name.c_str(), 0));
      using Answer = zib::objc::Class(id, SEL);
      hidden.addMethod(zib::selector<"class">(), zib::objc::functionCast<IMP>(&visibleClassOf),
                       zib::encoding::Method<Answer>::value.data());
      zib::objc::registerClassPair(hidden.raw());
    }
    setClass(owner, hidden);
  }
  static zib::objc::Class visibleClassOf(id self, SEL /*command*/) {
    return Class::ofObject(self).superclass().raw();
  }

  Outcome callBack(const Step& step) {
    calls().clear();
    completions_.clear();
    events_ = 0;
    Outcome outcome;
    const id delegate = currentDelegate(step.owner);
    const Selector selector(rows()[step.row].selector);
    outcome.isAnswered = delegate != nullptr && zib::respondsTo(delegate, selector);
    if (outcome.isAnswered) deliver(step.row, delegate, selector, outcome);
    sim::Scheduler::shared().drain();
    outcome.calls = calls();
    outcome.completions = completions_;
    outcome.events = static_cast<std::size_t>(events_);
    return outcome;
  }

  // The platform's, since the module may have become it.
  [[nodiscard]] id currentDelegate(std::size_t owner) const {
    if (owner == notificationCenter) return sim::usernotifications::delegate();
    if (owner == firebase) return sim::firebase::delegate();
    return delegates_[owner].raw();
  }

  void deliver(std::size_t row, id delegate, Selector selector, Outcome& outcome) {
    const zib::ValueMap userInfo{{"pn_campaign_id", "autumn"}};
    const id app = sim::uikit::application();
    const Object url = Object::retained(zib::URL::parse("app://a/?utm_source=b")->native());
    switch (row) {
      case deviceToken:
        return send<void>(delegate, selector, app, zib::makeData(zib::Bytes{1, 2}).raw());
      case registrationFailure:
        return send<void>(delegate, selector, app,
                          zib::Error{"Host", 7, "no", {}}.nativeError().raw());
      case openURL:
        outcome.result = std::to_string(send<BOOL>(delegate, selector, app, url.raw(),
                                                   zib::objectFrom(zib::Value(userInfo)).raw()));
        return;
      case openURLContexts:
        return send<void>(delegate, selector, sim::uikit::scene(0),
                          sim::uikit::makeURLContexts({url}).raw());
      case present:
        return send<void>(delegate, selector, sim::usernotifications::center(),
                          sim::usernotifications::makeNotification(userInfo).raw(),
                          Block<void(UInteger)>::from([this](UInteger options) {
                            completions_.push_back(std::to_string(options));
                          }).raw());
      case respond:
        return send<void>(delegate, selector, sim::usernotifications::center(),
                          sim::usernotifications::makeResponse(userInfo, "tap").raw(),
                          Block<void()>::from([this] { completions_.emplace_back("done"); }).raw());
      default:
        return send<void>(delegate, selector, sim::firebase::messaging(),
                          zib::makeString("token").raw());
    }
  }

  struct Replaced {
    std::size_t row;
    std::size_t number;
    zib::Method method;
  };

  const Sequence& sequence_;
  bool hasModule_;
  std::array<Object, ownerCount> delegates_;
  std::array<Class, ownerCount> observed_;
  std::vector<Replaced> replaced_;
  std::vector<Outcome> outcomes_;
  std::vector<std::string> completions_;
  std::atomic<long> events_ = 0;
};

// Rows that somebody has put back to what was there before the module: it may have lost them.
std::set<std::size_t> lostRows(const Sequence& sequence, std::size_t untilStep) {
  std::set<std::pair<std::size_t, std::size_t>> early;
  std::set<std::size_t> lost;
  bool isConfigured = false;
  for (std::size_t index = 0; index < untilStep; ++index) {
    const Step& step = sequence.steps[index];
    if (step.kind == Step::Kind::configure) isConfigured = true;
    if (step.kind == Step::Kind::replace && !isConfigured) early.insert({step.row, step.number});
    const bool isStale = isConfigured && early.contains({step.row, step.number});
    if (step.kind == Step::Kind::restore && isStale) lost.insert(step.row);
  }
  return lost;
}

bool hasHostsOwn(const Outcome& outcome) {
  return std::any_of(outcome.calls.begin(), outcome.calls.end(),
                     [](const std::string& call) { return call.starts_with("host"); });
}

std::string inWords(const Outcome& outcome) {
  std::string text = outcome.isAnswered ? "answered" : "not answered";
  for (const std::string& call : outcome.calls) text += ", " + call;
  for (const std::string& completion : outcome.completions) text += ", completed " + completion;
  return text + ", result \"" + outcome.result + "\", " + std::to_string(outcome.events) +
         " events";
}

// What is wrong about one callback; null if nothing is.
const char* mistake(std::size_t row, bool mayBeLost, const Outcome& with, const Outcome& without) {
  const bool isNotification = row == present || row == respond;
  if (with.calls != without.calls) return "the host's methods do not run as without the module";
  if (isNotification && !without.isAnswered && with.completions.size() != 1) {
    return "a notification of a host without the method is not completed once";
  }
  if (without.isAnswered && with.completions.size() != without.completions.size()) {
    return "completions are not those without the module";
  }
  if (hasHostsOwn(without) && with.completions != without.completions) {
    return "the host's options do not reach the system";
  }
  if (hasHostsOwn(without) && with.result != without.result) {
    return "the host's answer does not reach the system";
  }
  const std::size_t expected = isNotification ? 1 : 0;
  if (with.events > expected) return "more events than notifications";
  if (with.events < expected && !mayBeLost) return "a notification without an event";
  return nullptr;
}

}  // namespace

std::vector<Outcome> play(const Sequence& sequence, bool hasModule) {
  return Player(sequence, hasModule).play();
}

std::string difference(const Sequence& sequence, const std::vector<Outcome>& with,
                       const std::vector<Outcome>& without) {
  std::size_t callback = 0;
  for (std::size_t index = 0; index < sequence.steps.size(); ++index) {
    const Step& step = sequence.steps[index];
    if (step.kind != Step::Kind::callback) continue;
    if (callback >= with.size() || callback >= without.size()) return "a process died";
    const Outcome& ours = with[callback];
    const Outcome& theirs = without[callback];
    ++callback;
    const bool mayBeLost = lostRows(sequence, index).contains(step.row);
    if (const char* const wrong = mistake(step.row, mayBeLost, ours, theirs)) {
      return std::string(wrong) + ": step " + std::to_string(index) + ", " +
             rows()[step.row].selector + "\n  with:    " + inWords(ours) +
             "\n  without: " + inWords(theirs);
    }
  }
  return {};
}

}  // namespace endurance
