// NSDate's notion of now.

#include <chrono>

#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Foundation/GregorianTime.h"
#include "Simulator/Foundation/Installers.h"
#include "Simulator/Foundation/Setting.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::selector;
using zib::send;
using zib::objc::id;
using zib::objc::SEL;

double systemClock() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

Setting<std::function<double()>>& clockSetting() {
  static Setting<std::function<double()>> clock(&systemClock);
  return clock;
}

double sinceReferenceDate() { return clockSetting().get()() - referenceDate; }

id initWith(id date, double seconds) {
  return send<id>(date, selector<"initWithTimeIntervalSinceReferenceDate:">(), seconds);
}

id makeDate(id cls, double seconds) {
  return autoreleased(zib::Object::adopted(initWith(send<id>(cls, selector<"alloc">()), seconds)));
}

id dateNow(id cls, SEL) { return makeDate(cls, sinceReferenceDate()); }

id dateSinceNow(id cls, SEL, double seconds) {
  return makeDate(cls, sinceReferenceDate() + seconds);
}

id initNow(id date, SEL) { return initWith(date, sinceReferenceDate()); }

id initSinceNow(id date, SEL, double seconds) {
  return initWith(date, sinceReferenceDate() + seconds);
}

double nowSinceReferenceDate(id, SEL) { return sinceReferenceDate(); }

double timeIntervalSinceNow(id date, SEL) {
  return send<double>(date, selector<"timeIntervalSinceReferenceDate">()) - sinceReferenceDate();
}

}  // namespace

void foundation::setClock(std::function<double()> now) { clockSetting().set(std::move(now)); }

void foundation::installClock() {
  const zib::Class date = zib::Class::named("NSDate");
  installClassMethod(date, "date", &dateNow);
  installClassMethod(date, "dateWithTimeIntervalSinceNow:", &dateSinceNow);
  installClassMethod(date, "timeIntervalSinceReferenceDate", &nowSinceReferenceDate);
  installMethod(date, "init", &initNow);
  installMethod(date, "initWithTimeIntervalSinceNow:", &initSinceNow);
  installMethod(date, "timeIntervalSinceNow", &timeIntervalSinceNow);
  // The class of the dates themselves is private and brings its own.
  installMethod(zib::Class::ofObject(send<id>(date.object(), selector<"date">())),
                "timeIntervalSinceNow", &timeIntervalSinceNow);
}

}  // namespace sim
