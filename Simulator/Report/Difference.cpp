#include "Simulator/Report/Difference.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "Simulator/Timeline/Timeline.h"

namespace sim {
namespace {

using Lines = std::vector<std::string>;

std::size_t commonStart(const Lines& first, const Lines& second) {
  const auto [end, ignored] =
      std::mismatch(first.begin(), first.end(), second.begin(), second.end());
  return static_cast<std::size_t>(end - first.begin());
}

std::size_t commonEnd(const Lines& first, const Lines& second, std::size_t start) {
  const std::size_t most = std::min(first.size(), second.size()) - start;
  std::size_t count = 0;
  while (count < most && first[first.size() - 1 - count] == second[second.size() - 1 - count]) {
    ++count;
  }
  return count;
}

// The middle of two texts whose starts and ends are the same. Beyond what memory bears, all of the
// one and all of the other.
class Middle {
 public:
  Middle(const Lines& first, const Lines& second, std::size_t start, std::size_t end)
      : first_(first.begin() + static_cast<std::ptrdiff_t>(start),
               first.end() - static_cast<std::ptrdiff_t>(end)),
        second_(second.begin() + static_cast<std::ptrdiff_t>(start),
                second.end() - static_cast<std::ptrdiff_t>(end)) {
    constexpr std::size_t mostCells = 50'000'000;
    if ((first_.size() + 1) * (second_.size() + 1) <= mostCells) fill();
  }

  [[nodiscard]] std::vector<ComparedLine> lines() const {
    std::vector<ComparedLine> lines;
    std::size_t one = 0;
    std::size_t other = 0;
    while (one < first_.size() || other < second_.size()) {
      if (!lengths_.empty() && one < first_.size() && other < second_.size() &&
          first_[one] == second_[other]) {
        lines.push_back({Side::both, first_[one++]});
        ++other;
      } else if (other == second_.size() ||
                 (one < first_.size() && length(one + 1, other) >= length(one, other + 1))) {
        lines.push_back({Side::first, first_[one++]});
      } else {
        lines.push_back({Side::second, second_[other++]});
      }
    }
    return lines;
  }

 private:
  // Of the longest lines in common from there on.
  [[nodiscard]] std::uint32_t length(std::size_t one, std::size_t other) const {
    return lengths_.empty() ? 0 : lengths_[one * (second_.size() + 1) + other];
  }

  void fill() {
    const std::size_t width = second_.size() + 1;
    lengths_.resize((first_.size() + 1) * width);
    for (std::size_t one = first_.size(); one-- > 0;) {
      for (std::size_t other = second_.size(); other-- > 0;) {
        lengths_[one * width + other] =
            first_[one] == second_[other]
                ? length(one + 1, other + 1) + 1
                : std::max(length(one + 1, other), length(one, other + 1));
      }
    }
  }

  Lines first_;
  Lines second_;
  std::vector<std::uint32_t> lengths_;
};

// Where a value is compared with a literal, optimising GCC 14 warns of memory that is never read.
bool isText(const Json& value, std::string_view text) {
  const auto* const held = value.get_ptr<const std::string*>();
  return held != nullptr && *held == text;
}

}  // namespace

std::string meaningOf(const Json& entry) {
  const Json& kind = entry.at("kind");
  if (isText(kind, "log") || isText(kind, "step")) return {};
  std::string text = kind.get<std::string>();
  for (const auto& [key, value] : entry.items()) {
    if (key == "t" || key == "kind") continue;
    if (key == "thread" && isText(value, "main")) continue;
    text.append(" ").append(key).append("=").append(value.dump());
  }
  return text;
}

std::vector<ComparedLine> compare(const Lines& first, const Lines& second) {
  const std::size_t start = commonStart(first, second);
  const std::size_t end = commonEnd(first, second, start);
  std::vector<ComparedLine> lines;
  for (std::size_t index = 0; index < start; ++index) lines.push_back({Side::both, first[index]});
  std::ranges::move(Middle(first, second, start, end).lines(), std::back_inserter(lines));
  for (std::size_t index = first.size() - end; index < first.size(); ++index) {
    lines.push_back({Side::both, first[index]});
  }
  return lines;
}

}  // namespace sim
