// HTML put together in such a way that no text can become markup.

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sim {

class Markup {
 public:
  using Attributes = std::initializer_list<std::pair<std::string_view, std::string_view>>;

  // Tags and names of attributes are the program's own; texts and values are anybody's.
  Markup& open(std::string_view tag, Attributes attributes = {});
  Markup& close();
  Markup& text(std::string_view text);
  // An element with nothing but a text.
  Markup& element(std::string_view tag, std::string_view text, Attributes attributes = {});
  // What another one has put together.
  Markup& add(const Markup& other);

  // Closes what is open.
  [[nodiscard]] std::string str() const;

 private:
  std::string html_;
  std::vector<std::string_view> open_;
};

}  // namespace sim
