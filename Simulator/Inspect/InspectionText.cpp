#include "Simulator/Inspect/InspectionText.h"

#include <algorithm>
#include <map>

#include "Simulator/Inspect/Payload.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "ZibMessaging/Private/NotificationEvent.h"

namespace sim {
namespace {

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

std::string grouped(std::size_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, 1, ',');
  return digits;
}

std::string describeEvent(const Inspection& inspection) {
  if (inspection.isTest) {
    return "Reported: nothing, since this is a test notification. As a normal one:\n";
  }
  return occasionOf(inspection.eventType) + ", reported is:\n";
}

std::string describeField(const InspectedField& field) {
  constexpr std::size_t keyWidth = 17;
  constexpr std::size_t valueWidth = 28;
  const std::string value =
      field.value.is_string() ? inQuotes(field.value.get<std::string>()) : field.value.dump();
  return "  " + padded(field.key, keyWidth) + padded(value, valueWidth) + "  " + field.note + "\n";
}

std::string describeLink(const InspectedLink& link) {
  constexpr std::size_t keyWidth = 14;
  constexpr std::size_t verdictWidth = 12;
  std::string text = headlineOf(link) + (link.url ? " " + oneLine(*link.url) : "") + "\n";
  text += "  because " + link.reason + "\n";
  for (const ConsideredKey& considered : link.considered) {
    text += "  " + padded(considered.key, keyWidth) +
            padded(describeVerdict(considered.verdict), verdictWidth) + "  " + considered.note +
            "\n";
  }
  return text;
}

std::string describeRemarks(const std::vector<Remark>& remarks) {
  if (remarks.empty()) return "No remarks\n";
  std::string text = "Remarks\n";
  for (const Remark& remark : remarks) text += "  - " + oneLine(remark.message) + "\n";
  return text;
}

}  // namespace

std::string occasionOf(const std::string& eventType) {
  if (eventType == zib::clickedEvent.text) return "Tapped";
  if (eventType == zib::deliveredEvent.text) return "Shown in the foreground";
  return eventType.empty() ? "Without a type" : "As " + inQuotes(eventType);
}

std::string headlineOf(const InspectedLink& link) {
  if (!link.url) return "Tapped, it opens nothing";
  return link.isOpenedBySystem ? "Tapped, it opens"
                               : "Tapped, it asks for what the system cannot open:";
}

std::string describeSize(std::size_t size) {
  return grouped(size) + (size == 1 ? " byte of " : " bytes of ") + grouped(largestPayload);
}

std::string describeVerdict(const std::string& verdict) {
  static const std::map<std::string, std::string> words{
      {"absent", "not there"},     {"notText", "not text"}, {"empty", "empty"},
      {"notApplicable", "none"},   {"opens", "opens"},      {"noURL", "no URL"},
      {"notReached", "not tried"},
  };
  return words.at(verdict);
}

std::string textFrom(const Inspection& inspection) {
  std::string text = describeEvent(inspection);
  for (const InspectedField& field : inspection.event) text += describeField(field);
  return text + "\n" + describeLink(inspection.link) + "\n" + describeRemarks(inspection.remarks) +
         "\nSize: " + describeSize(inspection.size) + "\n";
}

}  // namespace sim
