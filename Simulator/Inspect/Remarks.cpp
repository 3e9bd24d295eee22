#include "Simulator/Inspect/Remarks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <set>

#include "Simulator/HTTP/Header.h"
#include "ZibMessaging/Private/LinkSearch.h"
#include "ZibMessaging/Private/NotificationEvent.h"

namespace sim {
namespace {

using From = zib::NotificationField::From;
using Remarks = std::vector<Remark>;

// Every top-level key that the module reads, each once, in the order of its tables.
const std::vector<std::string_view>& lookedUpKeys() {
  static const std::vector<std::string_view> keys = [] {
    std::vector<std::string_view> all;
    const auto add = [&](std::string_view key) {
      if (std::find(all.begin(), all.end(), key) == all.end()) all.push_back(key);
    };
    for (const zib::NotificationField& field : zib::notificationFields) {
      if (field.from == From::userInfo) add(field.source.text);
    }
    for (const zib::ConstantString& key : zib::linkKeys) add(key.text);
    add(zib::notificationTypeKey.text);
    return all;
  }();
  return keys;
}

bool isLookedUp(std::string_view key) {
  const auto& keys = lookedUpKeys();
  return std::find(keys.begin(), keys.end(), key) != keys.end();
}

bool isLinkKey(std::string_view key) {
  return std::any_of(zib::linkKeys.begin(), zib::linkKeys.end(),
                     [&](const zib::ConstantString& link) { return link.text == key; });
}

// Without what people confuse. A name that is hardly more than a separator keeps it.
std::string confusable(std::string_view key) {
  constexpr std::size_t shortest = 3;
  std::string text = lowerCase(key);
  std::string letters;
  std::copy_if(text.begin(), text.end(), std::back_inserter(letters), [](char character) {
    return character != '_' && character != '-' && character != ' ';
  });
  return letters.size() < shortest ? text : letters;
}

std::string trimmed(const std::string& text) {
  const auto isSpace = [](unsigned char character) { return std::isspace(character) != 0; };
  const auto begin = std::find_if_not(text.begin(), text.end(), isSpace);
  const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isSpace);
  return {begin, end.base()};
}

void remarkOnSize(const Payload& payload, Remarks& remarks) {
  if (payload.size <= largestPayload) return;
  remarks.push_back({"", "the payload has " + std::to_string(payload.size) +
                             " bytes, and the push service refuses more than " +
                             std::to_string(largestPayload)});
}

void remarkOnForm(const Payload& payload, Remarks& remarks) {
  if (!payload.isUTF8) {
    remarks.push_back({"", "the file is not UTF-8, which is all that the push service takes"});
  }
  for (const std::string& place : payload.repeatedKeys) {
    remarks.push_back(
        {place, inQuotes(place) + " stands twice in one object, and only one of the two counts"});
  }
}

// The key that differs from another in nothing but case, in words; empty if there is none.
std::string hintAtCase(const Json& object, const std::vector<std::string_view>& keys) {
  for (const auto& [key, value] : object.items()) {
    for (const std::string_view wanted : keys) {
      if (key == wanted || lowerCase(key) != wanted) continue;
      return "; " + inQuotes(key) + " is another key than " + inQuotes(wanted);
    }
  }
  return {};
}

std::string whyAlertShowsNothing(const Json& alert) {
  if (alert.is_string()) return "\"alert\" is an empty text";
  if (!alert.is_object()) return "\"alert\" is " + kindOf(alert) + ", not a text or an object";
  return "\"alert\" has no text as \"title\", \"subtitle\" or \"body\"" +
         hintAtCase(alert, {"title", "subtitle", "body"});
}

// What the system makes of the payload before the module sees it.
void remarkOnAlert(const Payload& payload, const Inspection& inspection, Remarks& remarks) {
  if (inspection.alert) return;
  const auto aps = payload.json.find("aps");
  if (aps == payload.json.end()) {
    remarks.push_back({"aps", "there is no \"aps\"" + hintAtCase(payload.json, {"aps"}) +
                                  ": the system shows nothing, so nobody can tap it"});
  } else if (!aps->is_object()) {
    remarks.push_back(
        {"aps", "\"aps\" is " + kindOf(*aps) + ", not an object: the system shows nothing"});
  } else if (!aps->contains("alert")) {
    remarks.push_back({"aps", "\"aps\" has no \"alert\"" + hintAtCase(*aps, {"alert"}) +
                                  ": the system shows no text, so nobody can tap it"});
  } else {
    remarks.push_back({"aps.alert", whyAlertShowsNothing(aps->at("alert")) +
                                        ": the system shows no text, so nobody can tap it"});
  }
}

// A number with a fraction, or of many digits, does not come as it was written.
std::string adviceOn(const Json& value) {
  if (value.is_number_float()) return ": write it in quotation marks";
  return value.is_primitive() && !value.is_null() ? ": write " + inQuotes(value.dump()) : "";
}

void remarkOnTypes(const Payload& payload, Remarks& remarks) {
  for (const std::string_view key : lookedUpKeys()) {
    const auto member = payload.json.find(std::string(key));
    if (member == payload.json.end() || member->is_string()) continue;
    remarks.push_back({std::string(key), inQuotes(key) + " is " + kindOf(*member) +
                                             ", and the module reads texts alone" +
                                             adviceOn(*member)});
  }
}

// One key can be like several.
void remarkOnLookalikes(const Payload& payload, Remarks& remarks) {
  std::map<std::string, std::string> meantByKey;
  for (const std::string_view key : lookedUpKeys()) {
    const std::string other = lookalikeOf(key, payload.json);
    if (other.empty()) continue;
    std::string& meant = meantByKey[other];
    meant += (meant.empty() ? "" : " or ") + inQuotes(key);
  }
  for (const auto& [key, meant] : meantByKey) {
    remarks.push_back({key, inQuotes(key) + " is not read: the key is " + meant});
  }
}

// Texts under looked-up names below the top level, where nothing is searched.
void remarkOnNested(const Json& value, const std::string& way, Remarks& remarks) {
  constexpr std::size_t most = 20;
  const auto visit = [&](const std::string& name, const Json& member) {
    const std::string place = way.empty() ? name : way + "." + name;
    if (remarks.size() >= most) return;
    if (!way.empty() && member.is_string() && isLookedUp(name)) {
      remarks.push_back({place, std::string(isLinkKey(name) ? "a link" : "a value") +
                                    " is nested as " + inQuotes(place) +
                                    ", where nothing is searched: move " + inQuotes(name) +
                                    " to the top level"});
    }
    if (member.is_structured()) remarkOnNested(member, place, remarks);
  };
  if (value.is_object()) {
    for (const auto& [name, member] : value.items()) visit(name, member);
  } else {
    for (std::size_t index = 0; index < value.size(); ++index) {
      visit(std::to_string(index), value[index]);
    }
  }
}

void remarkOnFixedFields(const Payload& payload, Remarks& remarks) {
  for (const zib::NotificationField& field : zib::notificationFields) {
    const std::string key(field.key);
    if (!payload.json.contains(key)) continue;
    if (field.from == From::userInfo && field.source.text == field.key) continue;
    const std::string name = inQuotes(key);
    switch (field.from) {
      case From::userInfo:
        remarks.push_back({key, name + " is not read: the field of that name is filled from " +
                                    inQuotes(field.source.text)});
        break;
      case From::constant:
        remarks.push_back({key, name + " is not read: the event says " +
                                    inQuotes(field.constant.text) + " always"});
        break;
      case From::eventType:
        remarks.push_back({key, name + " is not read: what happened decides the event's type"});
        break;
      case From::nothing:
        remarks.push_back({key, name + " is not read: the field of that name is null always"});
        break;
    }
  }
}

// What is said in words where a URL cannot be.
std::string whatIsNoURL(const std::string& candidate) {
  if (trimmed(candidate) != candidate) return " has a space before or after it";
  for (const char character : candidate) {
    const auto code = static_cast<unsigned char>(character);
    if (code == ' ') return " has a space in it (write %20)";
    if (code >= 0x80) return " has a character beyond ASCII in it (percent-encode it)";
    if (code < 0x20 || code == 0x7F) return " has a control character in it";
    if (std::string_view("\\^{}|<>\"`").find(character) != std::string_view::npos) {
      return std::string(" has ") + character + " in it (percent-encode it)";
    }
  }
  return " is no valid URL";
}

// Later links that would have been ones, if the decisive key had not been there.
std::vector<std::pair<std::string, std::string>> linksNotReached(const Payload& payload,
                                                                 const InspectedLink& link) {
  std::vector<std::pair<std::string, std::string>> links;
  for (const ConsideredKey& considered : link.considered) {
    if (considered.verdict != "notReached") continue;
    const auto member = payload.json.find(considered.key);
    if (member == payload.json.end() || !member->is_string()) continue;
    const auto text = member->get<std::string>();
    if (text.empty() || text == zib::noLinkText || text == link.candidate) continue;
    links.emplace_back(considered.key, text);
  }
  return links;
}

void remarkOnBlockedLinks(const Payload& payload, const InspectedLink& link, Remarks& remarks) {
  if (!link.key) return;
  const auto others = linksNotReached(payload, link);
  if (link.url) {
    for (const auto& [key, text] : others) {
      remarks.push_back({key, inQuotes(key) + " holds another link, " + inQuotes(text) +
                                  ", which never opens: " + inQuotes(*link.key) + " comes first"});
    }
    return;
  }
  std::string blocked;
  for (const auto& [key, text] : others) {
    blocked +=
        (blocked.empty() ? "; it also blocks " : ", and ") + inQuotes(key) + ", " + inQuotes(text);
  }
  remarks.push_back({*link.key, inQuotes(*link.candidate) + whatIsNoURL(*link.candidate) +
                                    ", so nothing opens" + blocked});
}

void remarkOnTheURL(const InspectedLink& link, Remarks& remarks) {
  if (!link.url) return;
  static const std::set<std::string> wordsForNone{"na", "n/a", "none",      "null", "nil",
                                                  "-",  "no",  "undefined", "n.a.", "false"};
  if (wordsForNone.contains(lowerCase(*link.candidate))) {
    remarks.push_back({*link.key, inQuotes(*link.candidate) + " is taken for a link: only " +
                                      inQuotes(zib::noLinkText) +
                                      ", letter by letter, means that there is none"});
  } else if (!link.isOpenedBySystem) {
    remarks.push_back(
        {*link.key, inQuotes(*link.candidate) +
                        " has no scheme such as https:, so the system cannot open it"});
  }
}

void remarkOnTestMarker(const Payload& payload, const Inspection& inspection, Remarks& remarks) {
  const std::string key(zib::notificationTypeKey.text);
  const auto member = payload.json.find(key);
  if (inspection.isTest || member == payload.json.end() || !member->is_string()) return;
  const auto text = member->get<std::string>();
  if (lowerCase(trimmed(text)) != lowerCase(zib::testNotificationType)) return;
  remarks.push_back({key, inQuotes(text) + " does not mark a test: it has to be " +
                              inQuotes(zib::testNotificationType) + ", letter by letter"});
}

void remarkOnEventType(const Inspection& inspection, Remarks& remarks) {
  const std::string_view delivered = zib::deliveredEvent.text;
  const std::string_view clicked = zib::clickedEvent.text;
  if (inspection.eventType == delivered || inspection.eventType == clicked) return;
  const std::string first = inspection.eventType.empty() ? "the event type is empty: " : "";
  remarks.push_back({"event_type", first + "the module itself reports nothing but " +
                                       inQuotes(delivered) + " and " + inQuotes(clicked)});
}

void remarkOnEmptyTexts(const Inspection& inspection, Remarks& remarks) {
  const Json emptyText = "";
  for (const InspectedField& field : inspection.event) {
    if (field.value != emptyText || field.key == "event_type") continue;
    remarks.push_back(
        {field.key, inQuotes(field.key) + " is reported as an empty text, not as null"});
  }
}

}  // namespace

std::string lookalikeOf(std::string_view lookedUp, const Json& payload) {
  if (payload.contains(std::string(lookedUp))) return {};
  const std::string wanted = confusable(lookedUp);
  for (const auto& [key, value] : payload.items()) {
    if (!isLookedUp(key) && confusable(key) == wanted) return key;
  }
  return {};
}

std::vector<Remark> remarksOn(const Payload& payload, const Inspection& inspection) {
  Remarks remarks;
  remarkOnEventType(inspection, remarks);
  remarkOnSize(payload, remarks);
  remarkOnForm(payload, remarks);
  remarkOnAlert(payload, inspection, remarks);
  remarkOnTestMarker(payload, inspection, remarks);
  remarkOnTypes(payload, remarks);
  remarkOnLookalikes(payload, remarks);
  remarkOnFixedFields(payload, remarks);
  remarkOnEmptyTexts(inspection, remarks);
  remarkOnBlockedLinks(payload, inspection.link, remarks);
  remarkOnTheURL(inspection.link, remarks);
  remarkOnNested(payload.json, "", remarks);
  return remarks;
}

}  // namespace sim
