#include "ZibMessaging/ZibIntegrationReport.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ZibMessaging/Private/AddOrSwap.h"
#include "ZibMessaging/Private/CallbackInProgress.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/DelegateLook.h"
#include "ZibMessaging/Private/Installation.h"
#include "ZibMessaging/Private/Interceptors.h"
#include "ZibMessaging/Private/QuotedText.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

namespace zib {
namespace {

using ReportRow = IntegrationReport::Row;
using State = IntegrationReport::State;

constexpr std::array<std::string_view, 4> stateNames{"none", "swapped", "added", "forwarding"};
constexpr std::array<std::string_view, 4> absences{"no application delegate", "no scene delegate",
                                                   "no notification delegate",
                                                   "no Firebase delegate"};
constexpr std::string_view lookRaised = "an exception ended the look for the delegate";

State stateOf(const Installation* installation) {
  switch (installation == nullptr ? Installed::nothing : installation->kind()) {
    case Installed::swapped:
      return State::swapped;
    case Installed::added:
      return State::added;
    case Installed::forwarding:
      return State::forwarding;
    case Installed::nothing:
      break;
  }
  return State::none;
}

void makeWellFormed(std::optional<std::string>& text) {
  if (text) text = wellFormed(*text);
}

FunctionName describe(Row row, objc::IMP function) {
  FunctionName name = nameOfFunction(function);
  makeWellFormed(name.image);
  makeWellFormed(name.symbol);
  if (isInterceptor(row, function)) {
    name.symbol = joined("-[ZibSwizzleManager ", interceptionOf(row).interceptorSelector, "]");
  }
  return name;
}

std::string_view textOr(const std::optional<std::string>& text, std::string_view otherwise) {
  return text ? std::string_view(*text) : otherwise;
}

std::string describeInWords(std::string_view before, const FunctionName& function) {
  return joined(before, textOr(function.symbol, "a function without a name"), " in ",
                textOr(function.image, "no file that is known"));
}

void remark(ReportRow& row, std::string_view text) { row.remarks.emplace_back(text); }

// A delegate, which is asked for its class once.
struct Delegate {
  explicit Delegate(const Object& found) : object(found.raw()), cls(classOfDelegate(object)) {}
  objc::id object;
  ClassOfDelegate cls;
};

// What is installed where the delegate's method is, or below a hidden class that has come before
// its own since; or null.
const Installation* installationFor(Row row, const Delegate& delegate) {
  const Selector selector(interceptionOf(row).hostSelector);
  const Installation* const found =
      installationOn(row, Class::ofObject(delegate.object).ownerOf(selector));
  return found != nullptr ? found : installationOn(row, delegate.cls.visible.ownerOf(selector));
}

// What the delegate's method is now, and what the module has to do with it.
class Describer {
 public:
  Describer(Row row, const Delegate& delegate)
      : row_(row),
        method_(Class::ofObject(delegate.object).instanceMethod(selector())),
        owner_(Class::ofObject(delegate.object).ownerOf(selector())),
        installation_(installationFor(row, delegate)) {}

  void describeIn(ReportRow& row) const {
    if (!method_) return;
    const objc::IMP outermost = method_.implementation();
    const Installation* const called = installationOf(row_, outermost, owner_);
    row.state = stateOf(called != nullptr ? called : installation_);
    addChain(row, outermost, called);
    if (called == nullptr && installation_ != nullptr) {
      remark(row, describeInWords("replaced after us by ", row.chain.front()));
    }
    const char* const types = method_.typeEncoding();
    if (types != nullptr && !encoding::agree(types, interceptorMethod(row_).typeEncoding())) {
      remark(row, "the method's types differ from the platform's");
    }
  }

 private:
  [[nodiscard]] Selector selector() const { return Selector(interceptionOf(row_).hostSelector); }

  // As far as it is known who calls whom: the module knows what it found, and nobody else's.
  void addChain(ReportRow& row, objc::IMP function, const Installation* called) const {
    for (std::size_t length = 0;; ++length) {
      row.chain.push_back(describe(row_, function));
      if (called == nullptr || called->kind() != Installed::swapped || length == rowCount) return;
      function = called->original();
      called = installationOf(row_, function, owner_);
    }
  }

  Row row_;
  Method method_;
  Class owner_;
  const Installation* installation_;
};

void describeDelegates(Row row, const std::vector<Delegate>& delegates, ReportRow& described) {
  const Delegate& first = delegates.front();
  described.delegateClass = wellFormed(first.cls.visible.name());
  if (first.cls.raises) remark(described, "raises where it is asked for its class");
  Describer(row, first).describeIn(described);
  for (const Delegate& each : delegates) {
    if (Class::ofObject(each.object) == Class::ofObject(first.object) ||
        isIntercepted(row, each.object) || installationFor(row, each) != nullptr) {
      continue;
    }
    remark(described, joined("a second delegate of class ", wellFormed(each.cls.visible.name()),
                             " is not intercepted"));
  }
}

void remarkOnCallsByHand(Row row, ReportRow& described) {
  const unsigned long times = CallbackInProgress::timesHandedIn(row);
  if (times == 0) return;
  remark(described, joined("callbacks that were handed in by hand while we had them already: ",
                           std::to_string(times)));
}

// What it finds broken costs the row the rest, and the other rows nothing.
void describeRow(Row row, std::string_view absence, const std::vector<Delegate>& delegates,
                 ReportRow& described) {
  described.method = interceptionOf(row).hostSelector;
  contained("integrationReport", [&] {
    if (delegates.empty()) {
      remark(described, absence);
    } else {
      describeDelegates(row, delegates, described);
    }
    remarkOnCallsByHand(row, described);
  });
}

}  // namespace

std::string_view nameOf(State state) noexcept {
  return stateNames[static_cast<std::size_t>(state)];
}

std::string IntegrationReport::text() const {
  std::string text = "ZibMessaging: who stands before the app's delegates\n";
  for (const Row& row : rows) {
    text.append(row.method).append(": ").append(nameOf(row.state));
    if (row.delegateClass) appendOneLine(text.append(" on "), *row.delegateClass);
    for (const Function& each : row.chain)
      appendOneLine(text.append("\n  runs "), describeInWords("", each));
    for (const std::string& each : row.remarks) appendOneLine(text.append("\n  "), each);
    text.push_back('\n');
  }
  return text;
}

IntegrationReport integrationReport() noexcept {
  IntegrationReport report;
  contained("integrationReport", [&] {
    std::vector<ReportRow> rows(rowCount);
    std::size_t described = 0;
    for (std::size_t kind = 0; kind < delegateLooks.size(); ++kind) {
      const DelegateLook& look = delegateLooks[kind];
      Sighting sighting;
      const bool isLookedFor = contained("integrationReport", [&] { sighting = look.find(); });
      const std::string_view absence = isLookedFor ? absences[kind] : lookRaised;
      const std::vector<Delegate> delegates(sighting.delegates.begin(), sighting.delegates.end());
      for (const Row row : look.rows) {
        describeRow(row, absence, delegates, rows.at(described++));
      }
    }
    report.rows = std::move(rows);
  });
  return report;
}

}  // namespace zib
