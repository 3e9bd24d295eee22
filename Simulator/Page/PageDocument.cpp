#include "Simulator/Page/PageDocument.h"

#include "Simulator/Page/Assets.h"

namespace sim {

std::string standaloneDocument(std::string_view title, const Markup& body) {
  Markup head;
  head.element("title", title);
  Markup heading;
  heading.open("header").element("h1", title);
  // Whatever a payload holds: a page that may load and run nothing does no harm.
  return "<!doctype html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
         "style-src 'unsafe-inline'\">"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">" +
         head.str() + "<style>" + std::string(assets::style) + "</style></head><body>" +
         heading.str() + "<main>" + body.str() + "</main></body></html>\n";
}

std::string partialDocument(std::string_view title, const Markup& body) {
  Markup head;
  head.element("title", title);
  return "<!doctype html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">" + head.str() +
         "</head><body><main>" + body.str() + "</main></body></html>\n";
}

std::string partialFrom(std::string standaloneDocument) {
  const std::string_view end = "</style>";
  const std::size_t from = standaloneDocument.find("<style>");
  const std::size_t to = standaloneDocument.find(end);
  if (from == std::string::npos || to == std::string::npos) return standaloneDocument;
  return standaloneDocument.erase(from, to + end.size() - from);
}

}  // namespace sim
