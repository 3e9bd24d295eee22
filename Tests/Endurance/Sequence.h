// What other swizzlers do to a host's delegates, drawn at random, and what the system's callbacks
// do after each act: with the module, and without it.

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Tests/Endurance/Rows.h"

namespace endurance {

enum Owner : std::size_t { application, notificationCenter, scene, firebase, ownerCount };

// A class of the host's, or one that was put under its object later.
struct ClassPlan {
  std::string name;
  // Its superclass's index; none for NSObject.
  std::optional<std::size_t> superclass;
  std::set<std::size_t> implements;
  // What it gets from a swizzler that adds its method where there is none.
  std::set<std::size_t> exchanged;
  // Of a subclass that was put under its object: what it overrides, calling super.
  std::optional<std::size_t> overrides;
  // Which numbered functions are its own.
  std::size_t number = 0;
};

struct Step {
  enum class Kind {
    configure,
    advance,
    callback,
    // Of another swizzler, on the class of one delegate:
    exchange,
    replace,
    restore,
    // Puts a subclass under the object, that overrides the row or nothing, or that hides itself as
    // observation does; and takes the object back to its own class.
    subclass,
    observe,
    unobserve,
  };
  Kind kind;
  std::size_t owner = 0;
  std::size_t row = 0;
  std::size_t number = 0;
};

struct Sequence {
  std::vector<ClassPlan> classes;
  // The index of each delegate's class.
  std::array<std::size_t, ownerCount> classOf{};
  bool isOneObjectBoth = false;
  std::vector<Step> steps;
};

Sequence drawSequence(std::uint32_t seed);
std::string describe(const Sequence& sequence);

// What one callback came to.
struct Outcome {
  bool isAnswered = false;
  std::vector<std::string> calls;
  std::vector<std::string> completions;
  std::string result;
  std::size_t events = 0;
};

// In this process, once.
std::vector<Outcome> play(const Sequence& sequence, bool hasModule);

// What differs; empty if nothing does.
std::string difference(const Sequence& sequence, const std::vector<Outcome>& with,
                       const std::vector<Outcome>& without);

}  // namespace endurance
