#include "Simulator/Page/InspectionView.h"

#include "Simulator/Inspect/InspectionText.h"

namespace sim {
namespace {

std::string shownValue(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// As a phone shows it on its locked screen.
Markup viewOfAlert(const std::optional<Alert>& alert) {
  Markup markup;
  markup.open("section", {{"class", "phone"}, {"aria-label", "The notification on a phone"}});
  if (!alert) {
    markup.element("p", "The system shows nothing.", {{"class", "nothing"}});
    return markup;
  }
  markup.open("div", {{"class", "notification"}});
  markup.open("div", {{"class", "origin"}})
      .element("span", "", {{"class", "icon"}, {"aria-hidden", "true"}})
      .element("span", "Your app")
      .element("span", "now", {{"class", "when"}})
      .close();
  if (!alert->title.empty())
    markup.element("p", alert->title, {{"class", "title"}, {"dir", "auto"}});
  if (!alert->subtitle.empty()) {
    markup.element("p", alert->subtitle, {{"class", "subtitle"}, {"dir", "auto"}});
  }
  markup.element("p", alert->body, {{"class", "body"}, {"dir", "auto"}});
  return markup;
}

Markup viewOfRemarks(const std::vector<Remark>& remarks) {
  Markup markup;
  markup.open("section", {{"class", "remarks"}});
  markup.element("h2", remarks.empty() ? "No remarks" : "Remarks");
  if (remarks.empty()) return markup;
  markup.open("ul");
  for (const Remark& remark : remarks) {
    markup.open("li");
    const bool isNested = remark.key.find('.') != std::string::npos;
    if (isNested) markup.element("code", remark.key).text(": ");
    markup.text(remark.message).close();
  }
  return markup;
}

std::string headingOfEvent(const Inspection& inspection) {
  return inspection.isTest ? "A test notification: nothing is reported"
                           : occasionOf(inspection.eventType) + ", reported is";
}

Markup viewOfEvent(const Inspection& inspection) {
  Markup markup;
  markup.open("section").element("h2", headingOfEvent(inspection));
  markup.open(
      "div",
      {{"class", "wide"}, {"tabindex", "0"}, {"role", "region"}, {"aria-label", "The event"}});
  markup.open("table").open("thead").open("tr");
  for (const char* head : {"Field", "Value", "Why"}) markup.element("th", head, {{"scope", "col"}});
  markup.close().close().open("tbody");
  for (const InspectedField& field : inspection.event) {
    const bool isNull = field.value.is_null();
    markup.open("tr").element("th", field.key, {{"scope", "row"}});
    markup.element("td", shownValue(field.value), {{"class", isNull ? "null" : "value"}});
    markup.element("td", field.note, {{"class", "note"}}).close();
  }
  return markup;
}

Markup viewOfLink(const InspectedLink& link) {
  Markup markup;
  markup.open("section");
  markup.element("h2", headlineOf(link));
  if (link.url) markup.element("p", *link.url, {{"class", "url"}});
  markup.element("p", "Because " + link.reason + ".");
  markup.open("ol", {{"class", "ladder"}});
  for (const ConsideredKey& considered : link.considered) {
    markup.open("li", {{"class", considered.verdict}}).open("div", {{"class", "rung"}});
    markup.element("code", considered.key).text(" ");
    markup.element("strong", describeVerdict(considered.verdict), {{"class", "verdict"}}).text(" ");
    markup.element("span", considered.note, {{"class", "note"}}).close().close();
  }
  return markup;
}

Markup viewOfSize(std::size_t size) {
  Markup markup;
  markup.element("p", "Size: " + describeSize(size),
                 {{"class", size > largestPayload ? "size over" : "size"}});
  return markup;
}

std::string summaryOf(const InspectedLink& link) {
  if (!link.url) return "Opens nothing";
  return (link.isOpenedBySystem ? "Opens " : "The system cannot open ") + *link.url;
}

// What a screen reader says while somebody types.
std::string summaryOf(const Inspection& inspection) {
  const std::size_t count = inspection.remarks.size();
  const std::string remarks = count == 0   ? "No remarks."
                              : count == 1 ? "1 remark."
                                           : std::to_string(count) + " remarks.";
  return (inspection.isTest ? "A test: nothing is reported. " : "") + summaryOf(inspection.link) +
         ". " + remarks;
}

}  // namespace

Markup viewOf(const Inspection& inspection) {
  Markup markup;
  markup.open("div", {{"class", "inspection"}, {"data-summary", summaryOf(inspection)}});
  markup.open("div", {{"class", "beside"}})
      .add(viewOfAlert(inspection.alert))
      .add(viewOfRemarks(inspection.remarks))
      .add(viewOfSize(inspection.size))
      .close();
  markup.open("div", {{"class", "decisions"}})
      .add(viewOfLink(inspection.link))
      .add(viewOfEvent(inspection))
      .close();
  return markup;
}

}  // namespace sim
