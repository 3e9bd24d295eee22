// Sequences that make sense: nobody replaces what is not there, and only what was replaced is
// restored.

#include <algorithm>
#include <random>
#include <sstream>

#include "Tests/Endurance/Sequence.h"

namespace endurance {
namespace {

Owner ownerOf(std::size_t row) {
  switch (row) {
    case openURLContexts:
      return scene;
    case present:
    case respond:
      return notificationCenter;
    case fcmToken:
      return firebase;
    default:
      return application;
  }
}

class Draw {
 public:
  explicit Draw(std::uint32_t seed) : random_(seed) {}

  Sequence sequence() {
    drawClasses();
    const std::size_t before = below(4);
    for (std::size_t count = 0; count < before; ++count) act();
    add({Step::Kind::configure});
    const std::size_t after = 4 + below(8);
    for (std::size_t count = 0; count < after; ++count) {
      if (isOneIn(2)) act();
      if (isOneIn(6)) add({Step::Kind::advance});
      callBack(below(rowCount));
    }
    for (std::size_t row = 0; row < rowCount; ++row) callBack(row);
    return sequence_;
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }
  bool isOneIn(std::size_t count) { return below(count) == 0; }
  void add(Step step) { sequence_.steps.push_back(step); }
  void callBack(std::size_t row) { add({Step::Kind::callback, ownerOf(row), row}); }

  std::size_t addClass(std::string name, std::optional<std::size_t> superclass) {
    ClassPlan plan;
    plan.name = std::move(name);
    plan.superclass = superclass;
    plan.number = sequence_.classes.size() % roles;
    for (std::size_t row = 0; row < rowCount; ++row) {
      if (isOneIn(2)) plan.implements.insert(row);
    }
    sequence_.classes.push_back(plan);
    return sequence_.classes.size() - 1;
  }

  void drawClasses() {
    for (std::size_t owner = 0; owner < ownerCount; ++owner) {
      const std::string name = "EnduranceHost" + std::to_string(owner);
      std::optional<std::size_t> superclass;
      if (owner > 0 && isOneIn(4)) superclass = sequence_.classOf[application];
      if (!superclass && isOneIn(2)) superclass = addClass(name + "Base", std::nullopt);
      sequence_.classOf[owner] = addClass(name, superclass);
    }
    sequence_.isOneObjectBoth = isOneIn(4);
    if (sequence_.isOneObjectBoth) {
      sequence_.classOf[notificationCenter] = sequence_.classOf[application];
    }
    visible_ = sequence_.classOf;
  }

  // What the host's class answers, by itself or by what swizzlers have added.
  [[nodiscard]] bool has(std::size_t cls, std::size_t row) const {
    const ClassPlan& plan = sequence_.classes[cls];
    return plan.implements.contains(row) || plan.exchanged.contains(row) ||
           (plan.superclass && has(*plan.superclass, row));
  }

  void setVisible(std::size_t owner, std::size_t cls) {
    visible_[owner] = cls;
    const bool isBoth = sequence_.isOneObjectBoth && owner <= notificationCenter;
    if (isBoth) visible_[application] = visible_[notificationCenter] = cls;
  }

  void act() {
    const std::size_t row = below(rowCount);
    const Owner owner = ownerOf(row);
    switch (below(6)) {
      case 0:
        return exchange(owner, row);
      case 1:
      case 2:
        return replace(owner, row);
      case 3:
        return restore();
      case 4:
        return addSubclass(owner, row);
      default:
        return observe(owner);
    }
  }

  void exchange(Owner owner, std::size_t row) {
    if (used_[row] == roles) return;
    sequence_.classes[visible_[owner]].exchanged.insert(row);
    add({Step::Kind::exchange, owner, row, used_[row]++});
  }

  void replace(Owner owner, std::size_t row) {
    if (used_[row] == roles || !has(visible_[owner], row)) return;
    replaced_.push_back({Step::Kind::restore, owner, row, used_[row]});
    add({Step::Kind::replace, owner, row, used_[row]++});
  }

  void restore() {
    if (replaced_.empty()) return;
    const std::size_t index = below(replaced_.size());
    add(replaced_[index]);
    replaced_.erase(replaced_.begin() + static_cast<std::ptrdiff_t>(index));
  }

  void addSubclass(Owner owner, std::size_t row) {
    if (used_[row] == roles || observed_.contains(owner)) return;
    if (sequence_.isOneObjectBoth && owner <= notificationCenter) return;
    ClassPlan plan;
    plan.name = "EnduranceSubclass" + std::to_string(sequence_.classes.size());
    plan.superclass = visible_[owner];
    if (isOneIn(2) && has(visible_[owner], row)) plan.overrides = row;
    plan.number = used_[row]++;
    sequence_.classes.push_back(plan);
    setVisible(owner, sequence_.classes.size() - 1);
    add({Step::Kind::subclass, owner, row, visible_[owner]});
  }

  void observe(Owner owner) {
    if (sequence_.isOneObjectBoth && owner == notificationCenter) owner = application;
    const bool isObserved = !observed_.insert(owner).second;
    if (isObserved) observed_.erase(owner);
    add({isObserved ? Step::Kind::unobserve : Step::Kind::observe, owner});
  }

  std::mt19937 random_;
  Sequence sequence_;
  std::array<std::size_t, ownerCount> visible_{};
  std::array<std::size_t, rowCount> used_{};
  std::vector<Step> replaced_;
  std::set<std::size_t> observed_;
};

const char* nameOf(Step::Kind kind) {
  switch (kind) {
    case Step::Kind::configure:
      return "configure";
    case Step::Kind::advance:
      return "advance";
    case Step::Kind::callback:
      return "callback";
    case Step::Kind::exchange:
      return "exchange";
    case Step::Kind::replace:
      return "replace";
    case Step::Kind::restore:
      return "restore";
    case Step::Kind::subclass:
      return "subclass";
    case Step::Kind::observe:
      return "observe";
    case Step::Kind::unobserve:
      return "unobserve";
  }
  return "";
}

}  // namespace

Sequence drawSequence(std::uint32_t seed) { return Draw(seed).sequence(); }

std::string describe(const Sequence& sequence) {
  std::ostringstream text;
  for (const ClassPlan& plan : sequence.classes) {
    text << "class " << plan.name << " (functions " << plan.number << ")";
    if (plan.superclass) text << " : " << sequence.classes[*plan.superclass].name;
    for (const std::size_t row : plan.implements) text << "\n    has " << rows()[row].selector;
    if (plan.overrides) text << "\n    overrides " << rows()[*plan.overrides].selector;
    text << '\n';
  }
  if (sequence.isOneObjectBoth) text << "one object is both delegates\n";
  for (const Step& step : sequence.steps) {
    text << nameOf(step.kind);
    const bool isOfRow = step.kind != Step::Kind::configure && step.kind != Step::Kind::advance;
    if (isOfRow) {
      text << " owner " << step.owner << ' ' << rows()[step.row].selector << " number "
           << step.number;
    }
    text << '\n';
  }
  return text.str();
}

}  // namespace endurance
