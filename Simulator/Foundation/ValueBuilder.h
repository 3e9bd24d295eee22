// Puts a value together from the events of a parser, without recursion.

#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Simulator/Foundation/Budget.h"
#include "Simulator/Foundation/SortedMembers.h"
#include "ZibPlatform/Foundation/Value.h"

namespace sim {

// Of equal keys the last wins. Throws FormatError when the document asks for too much, and when
// keys and values of a dictionary do not alternate.
class ValueBuilder {
 public:
  void beginArray();
  void beginDictionary();
  void key(std::string text);
  // A value that holds no others.
  void add(zib::Value scalar);
  void end();

  [[nodiscard]] bool isEmpty() const noexcept { return open_.empty() && !root_; }
  // Whether the innermost open container is a dictionary that waits for a key, or for a value.
  [[nodiscard]] bool awaitsKey() const noexcept;
  [[nodiscard]] bool awaitsValue() const noexcept;
  // The root, once it is complete.
  [[nodiscard]] std::optional<zib::Value> take();

 private:
  struct OpenDictionary {
    SortedMembers members;
    std::optional<std::string> key;
  };
  using Open = std::variant<zib::Array, OpenDictionary>;

  void open(Open container);
  void place(zib::Value value);

  Budget budget_;
  std::vector<Open> open_;
  std::optional<zib::Value> root_;
};

}  // namespace sim
