// Classes and methods of the object runtime, as values. All runtime data lives for the process, so
// nothing is owned.

#pragma once

#include <atomic>

#include "ZibPlatform/ObjectiveC/FixedString.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Selector.h"

namespace zib {

// One method of one class, or none.
class Method {
 public:
  explicit Method(objc::Method raw) noexcept : raw_(raw) {}

  explicit operator bool() const noexcept { return raw_ != nullptr; }
  [[nodiscard]] objc::IMP implementation() const { return objc::implementationOf(raw_); }
  void setImplementation(objc::IMP function) const { objc::setImplementation(raw_, function); }
  // Null when the class was built without one.
  [[nodiscard]] const char* typeEncoding() const { return objc::typeEncodingOf(raw_); }

  friend bool operator==(Method, Method) = default;

 private:
  objc::Method raw_;
};

// A class, or none. Class objects are receivers too: see object().
class Class {
 public:
  constexpr Class() noexcept = default;
  explicit constexpr Class(objc::Class raw) noexcept : raw_(raw) {}

  // The class of that name, or none when no such class is loaded.
  static Class named(const char* name) { return Class(objc::lookUpClass(name)); }
  // The class in which the runtime looks up the object's methods; that of nil is none.
  static Class ofObject(objc::id object) { return Class(objc::classOf(object)); }
  // The class that a delegate's methods are to be found in and installed on. Key-value observation
  // puts a hidden subclass before it, which comes and goes; the object's own answer to `class`
  // hides that subclass, and is believed when it names a superclass of what the runtime has.
  static Class visibleClassOf(objc::id object);

  explicit operator bool() const noexcept { return raw_ != nullptr; }
  [[nodiscard]] objc::Class raw() const noexcept { return raw_; }
  // The class object as a receiver of messages.
  [[nodiscard]] objc::id object() const noexcept { return reinterpret_cast<objc::id>(raw_); }
  [[nodiscard]] const char* name() const { return objc::nameOfClass(raw_); }
  [[nodiscard]] Class superclass() const { return Class(objc::superclassOf(raw_)); }
  // Whether this class is `ancestor` or derives from it.
  [[nodiscard]] bool derivesFrom(Class ancestor) const;
  // The method that instances of this class answer the selector with, inherited ones included.
  [[nodiscard]] Method instanceMethod(Selector selector) const {
    return Method(objc::instanceMethod(raw_, selector.raw()));
  }
  // The class of this one's ancestry (itself first) whose own method instanceMethod() gives.
  [[nodiscard]] Class ownerOf(Selector selector) const;
  // False when the class has such a method of its own already; nothing is changed then.
  // NOLINTNEXTLINE(readability-make-member-function-const): it changes the class.
  bool addMethod(Selector selector, objc::IMP function, const char* types) {
    return objc::addMethod(raw_, selector.raw(), function, types) != 0;
  }

  friend bool operator==(Class, Class) = default;

 private:
  objc::Class raw_ = nullptr;
};

// A class by its name, looked up until it is found and then kept: a class can appear late, but
// never goes.
struct KnownClass {
  [[nodiscard]] Class find() noexcept {
    const objc::Class raw = found.load(std::memory_order_relaxed);
    return Class(raw == nullptr ? lookUpNow() : raw);
  }
  objc::Class lookUpNow() noexcept;

  const char* name;
  std::atomic<objc::Class> found{nullptr};
  // Of an object that isKind() said yes of, the class, whose ancestry has this one.
  std::atomic<objc::Class> lastKind{nullptr};
};

template <FixedString Name>
inline constinit KnownClass knownClass{Name.data()};

// The class of a name that is known at compile time.
template <FixedString Name>
Class classNamed() {
  return knownClass<Name>.find();
}

// Whether the object, or the class object, belongs to the hierarchy of NSObject. Says false for
// nil.
bool isNSObject(objc::id object);
bool respondsTo(objc::id object, Selector selector);

// What isKind() does for an object of another class than the last one.
bool isOtherKind(objc::id object, KnownClass& ancestor);

// Whether the object is an instance of the class or of one that derives from it, by its ancestry or
// its own answer. Says false for nil, and for what is outside NSObject's hierarchy. Cheap for
// objects of the same class as the last one: a payload's strings are mostly of one class. Only that
// class is remembered whose ancestry says yes, which never changes.
inline bool isKind(objc::id object, KnownClass& ancestor) {
  return object != nullptr &&
         (objc::classOf(object) == ancestor.lastKind.load(std::memory_order_relaxed) ||
          isOtherKind(object, ancestor));
}
template <FixedString Name>
bool isKind(objc::id object) {
  return isKind(object, knownClass<Name>);
}

// The object where it is of that class; nil where it is not.
inline objc::id cast(objc::id object, KnownClass& ancestor) {
  return isKind(object, ancestor) ? object : nullptr;
}
template <FixedString Name>
objc::id cast(objc::id object) {
  return cast(object, knownClass<Name>);
}

}  // namespace zib
