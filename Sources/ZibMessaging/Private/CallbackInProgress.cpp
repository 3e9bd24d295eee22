#include "ZibMessaging/Private/CallbackInProgress.h"

#include <array>
#include <atomic>

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace zib {
namespace {

constinit std::array<std::atomic<unsigned long>, rowCount> handedIn;

}  // namespace

void reportCircle(const char* message) noexcept {
  static_assert(maximumDepth == 16, "the line says so");
  contained("the report of a circle", [&] {
    logError(joined("ZibMessaging: ", message,
                    " came back 16 times for one callback: other libraries call in a circle, "
                    "which ends here"));
  });
}

constinit thread_local CallbackInProgress* CallbackInProgress::innermost = nullptr;

void CallbackInProgress::compareWithOuter() noexcept {
  for (const CallbackInProgress* each = outer_; each != nullptr; each = each->outer_) {
    if (each->isOf(row_, subject_)) {
      isNew_ = false;
      depth_ = each->depth_ + 1;
      return;
    }
    if (isSuperCallOf(*each)) isNew_ = false;
  }
}

// A method may call its superclass's with other arguments, such as a set of fewer links.
bool CallbackInProgress::isSuperCallOf(const CallbackInProgress& outer) const noexcept {
  if (installation_ == nullptr || outer.installation_ == nullptr || outer.row_ != row_ ||
      outer.receiver_ != receiver_) {
    return false;
  }
  const Class superclass = outer.installation_->owner().superclass();
  return superclass.derivesFrom(installation_->owner());
}

bool CallbackInProgress::isCompleted() const noexcept {
  for (const CallbackInProgress* each = this; each != nullptr; each = each->outer_) {
    if (each->isOf(row_, subject_) && each->isCompleted_) return true;
  }
  return false;
}

void CallbackInProgress::noteCompletion(Row row, objc::id subject) noexcept {
  for (CallbackInProgress* each = innermost; each != nullptr; each = each->outer_) {
    if (each->isOf(row, subject)) each->isCompleted_ = true;
  }
}

const Installation* CallbackInProgress::latestFor(Row row, objc::id receiver) noexcept {
  for (const CallbackInProgress* each = innermost; each != nullptr; each = each->outer_) {
    if (each->row_ == row && each->receiver_ == receiver && each->installation_ != nullptr) {
      return each->installation_;
    }
  }
  return nullptr;
}

void CallbackInProgress::noteHandedIn(Row row) noexcept {
  handedIn[static_cast<std::size_t>(row)].fetch_add(1, std::memory_order_relaxed);
}

unsigned long CallbackInProgress::timesHandedIn(Row row) noexcept {
  return handedIn[static_cast<std::size_t>(row)].load(std::memory_order_relaxed);
}

}  // namespace zib
