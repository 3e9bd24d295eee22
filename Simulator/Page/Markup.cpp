#include "Simulator/Page/Markup.h"

#include <algorithm>

namespace sim {
namespace {

std::string escaped(std::string_view text) {
  std::string html;
  for (const char character : text) {
    switch (character) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      case '\0':  // no document may hold it
        html += "\uFFFD";
        break;
      default:
        html += character;
    }
  }
  return html;
}

}  // namespace

Markup& Markup::open(std::string_view tag, Attributes attributes) {
  html_.append("<").append(tag);
  for (const auto& [name, value] : attributes) {
    html_.append(" ").append(name).append("=\"").append(escaped(value)).append("\"");
  }
  html_ += '>';
  open_.push_back(tag);
  return *this;
}

Markup& Markup::close() {
  html_.append("</").append(open_.back()).append(">");
  open_.pop_back();
  return *this;
}

Markup& Markup::text(std::string_view text) {
  html_ += escaped(text);
  return *this;
}

Markup& Markup::element(std::string_view tag, std::string_view text, Attributes attributes) {
  return open(tag, attributes).Markup::text(text).close();
}

Markup& Markup::add(const Markup& other) {
  html_ += other.str();
  return *this;
}

std::string Markup::str() const {
  std::string html = html_;
  std::for_each(open_.rbegin(), open_.rend(),
                [&html](std::string_view tag) { html.append("</").append(tag).append(">"); });
  return html;
}

}  // namespace sim
