// The one instance of a class that a process has.

#pragma once

#include <memory>

#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"

struct ZibTestSeam;

namespace zib {

// Base of a class with one instance, which lives as long as the process, in a shared pointer: what
// is deferred holds it weakly. The class defines its own `shared()`, in a source file of the
// module's, so that a process has one wherever the module is linked into. It cannot be copied or
// moved.
template <class Type>
class SharedInstance : public std::enable_shared_from_this<Type> {
 public:
  SharedInstance(const SharedInstance&) = delete;
  SharedInstance& operator=(const SharedInstance&) = delete;

 protected:
  // What only this class can make, so that nobody else makes a second instance.
  class Key {
    friend class SharedInstance;
    Key() {}  // NOLINT(modernize-use-equals-default): anybody could make an aggregate
  };

  SharedInstance() = default;
  ~SharedInstance() = default;

  static Type& instance() { return *slot(); }

 private:
  friend struct ::ZibTestSeam;

  // On its own, so that finding the instance saves no registers for it.
  [[gnu::noinline]] static std::shared_ptr<Type> make() noexcept {
    return std::make_shared<Type>(Key());
  }
  static std::shared_ptr<Type>& slot() {
    static NeverDestroyed<std::shared_ptr<Type>> slot(&make);
    return *slot;
  }
};

}  // namespace zib
