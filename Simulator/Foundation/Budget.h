// How much a document from somewhere may ask of the process. Each reader and writer spends from one
// as it goes, so a few bytes that stand for gigabytes are refused before memory is.

#pragma once

#include <cstddef>

namespace sim {

class Budget {
 public:
  static constexpr std::size_t maximumBytes = std::size_t{64} << 20U;
  static constexpr std::size_t maximumValues = 250'000;
  // The platform's own limit for JSON.
  static constexpr std::size_t maximumDepth = 512;

  // Each throws FormatError beyond its limit.
  void spendBytes(std::size_t count);
  void spendValue();
  void enter();
  void leave() noexcept { --depth_; }

 private:
  std::size_t bytes_ = 0;
  std::size_t values_ = 0;
  std::size_t depth_ = 0;
};

// One container that is being read or written.
class Nesting {
 public:
  explicit Nesting(Budget& budget) : budget_(budget) { budget_.enter(); }
  ~Nesting() { budget_.leave(); }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  Budget& budget_;
};

}  // namespace sim
