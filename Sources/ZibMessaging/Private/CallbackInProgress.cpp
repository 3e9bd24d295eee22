#include "ZibMessaging/Private/CallbackInProgress.h"

namespace zib {

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

}  // namespace zib
