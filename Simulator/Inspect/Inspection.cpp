#include "Simulator/Inspect/Inspection.h"

#include "Simulator/Inspect/Payload.h"
#include "Simulator/Inspect/Remarks.h"
#include "Simulator/Json/Values.h"
#include "ZibMessaging/Private/LinkSearch.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibPlatform/Foundation/URL.h"

namespace sim {
namespace {

using From = zib::NotificationField::From;

// Why a looked-up key gives no text.
std::string whyNoText(std::string_view key, const Json& payload) {
  const auto member = payload.find(std::string(key));
  if (member != payload.end()) return kindOf(*member) + ", not text";
  const std::string lookalike = lookalikeOf(key, payload);
  if (lookalike.empty()) return "there is no key " + inQuotes(key);
  return "there is no key " + inQuotes(key) + "; " + inQuotes(lookalike) +
         " is another one, since keys are matched letter by letter";
}

std::string noteOn(const zib::NotificationField& field, bool isNull, const Json& payload) {
  switch (field.from) {
    case From::userInfo:
      return isNull ? whyNoText(field.source.text, payload)
                    : "from the key " + inQuotes(field.source.text);
    case From::constant:
      return "always this text";
    case From::eventType:
      return "what happened";
    case From::nothing:
      return "always null: nothing in a notification fills it";
  }
  return {};
}

std::vector<InspectedField> inspectEvent(const Payload& payload, std::string_view eventType) {
  const zib::ValueMap event =
      ZibPayloadBuilder::createNotificationPayload(payload.userInfo, eventType);
  std::vector<InspectedField> fields;
  for (const zib::NotificationField& field : zib::notificationFields) {
    Json value = jsonFrom(*event.find(field.key));
    std::string note = noteOn(field, value.is_null(), payload.json);
    fields.push_back({std::string(field.key), std::move(value), std::move(note)});
  }
  return fields;
}

bool hasScheme(std::string_view url) {
  const std::size_t end = url.find_first_of(":/?#");
  return end != std::string_view::npos && end > 0 && url[end] == ':';
}

ConsideredKey considerBeforeDecision(const std::string& key, zib::StringRef text,
                                     const Json& payload) {
  switch (zib::verdictOnLink(text)) {
    case zib::LinkVerdict::noText:
      return {key, payload.contains(key) ? "notText" : "absent", whyNoText(key, payload)};
    case zib::LinkVerdict::empty:
      return {key, "empty", "an empty text, which counts as no link"};
    case zib::LinkVerdict::notApplicable:
      return {key, "notApplicable", "\"" + std::string(zib::noLinkText) + "\": no link"};
    case zib::LinkVerdict::candidate:
      break;
  }
  const zib::Link found(text);
  const std::string sent = inQuotes(found.sent());
  if (!found.url()) {
    return {key, "noURL", "the first text, so it decides, but it is no valid URL: " + sent};
  }
  return {key, "opens",
          std::string("the first link, so it decides") +
              (hasScheme(found.text()) ? ": " : ", but the system cannot open it: ") + sent};
}

ConsideredKey considerAfterDecision(const std::string& key, zib::StringRef text,
                                    const std::string& decider) {
  const bool isLink = zib::verdictOnLink(text) == zib::LinkVerdict::candidate;
  return {key, "notReached",
          isLink ? inQuotes(zib::Utf8(text).view()) + " is not looked at: " + inQuotes(decider) +
                       " has decided"
                 : "not looked at"};
}

void decide(InspectedLink& link, const std::string& key, zib::StringRef text) {
  link.key = key;
  const zib::Link found(text);
  link.candidate = found.sent();
  if (found.url()) {
    link.url = found.text();
    link.isOpenedBySystem = hasScheme(*link.url);
    link.reason = inQuotes(key) + " is the first of the link keys that holds a link";
  } else {
    link.reason = inQuotes(key) +
                  " is the first of the link keys that holds a text, and that is no valid URL; "
                  "later keys are not tried";
  }
}

InspectedLink inspectLink(const Payload& payload) {
  InspectedLink link;
  link.reason = "none of the link keys holds a link";
  const zib::StringRef decisive = zib::findLink(payload.userInfo);
  for (const zib::ConstantString& constant : zib::linkKeys) {
    const std::string key(constant.text);
    const zib::StringRef text = payload.userInfo.text(constant);
    if (link.key) {
      link.considered.push_back(considerAfterDecision(key, text, *link.key));
      continue;
    }
    link.considered.push_back(considerBeforeDecision(key, text, payload.json));
    if (decisive && text.native() == decisive.native()) decide(link, key, text);
  }
  return link;
}

std::string textAt(const Json& object, const char* key) {
  const auto member = object.find(key);
  return member != object.end() && member->is_string() ? member->get<std::string>() : "";
}

std::optional<Alert> inspectAlert(const Json& payload) {
  const auto aps = payload.find("aps");
  if (aps == payload.end() || !aps->is_object() || !aps->contains("alert")) return std::nullopt;
  const Json& alert = aps->at("alert");
  if (alert.is_string()) return Alert{"", "", alert.get<std::string>()};
  if (!alert.is_object()) return std::nullopt;
  // The name of a text that the app has in the user's language stands for that text.
  const auto textOrName = [&](const char* key, const char* keyOfName) {
    const std::string text = textAt(alert, key);
    return text.empty() ? textAt(alert, keyOfName) : text;
  };
  return Alert{textOrName("title", "title-loc-key"), textOrName("subtitle", "subtitle-loc-key"),
               textOrName("body", "loc-key")};
}

bool isShown(const Alert& alert) {
  return !alert.title.empty() || !alert.subtitle.empty() || !alert.body.empty();
}

Json orNull(const std::optional<std::string>& text) { return text ? Json(*text) : Json(); }

Json jsonFromLink(const InspectedLink& link) {
  Json considered = Json::array();
  for (const ConsideredKey& key : link.considered) {
    considered.push_back({{"key", key.key}, {"verdict", key.verdict}, {"note", key.note}});
  }
  return {{"key", orNull(link.key)}, {"candidate", orNull(link.candidate)},
          {"url", orNull(link.url)}, {"opens", link.url.has_value()},
          {"reason", link.reason},   {"considered", considered}};
}

}  // namespace

Inspection inspect(std::string_view text, std::string_view eventType) {
  const Payload payload = readPayload(text);
  Inspection inspection;
  inspection.eventType = eventType;
  inspection.isTest = zib::isTestNotification(payload.userInfo);
  inspection.event = inspectEvent(payload, eventType);
  inspection.link = inspectLink(payload);
  inspection.size = payload.size;
  inspection.alert = inspectAlert(payload.json);
  if (inspection.alert && !isShown(*inspection.alert)) inspection.alert.reset();
  inspection.remarks = remarksOn(payload, inspection);
  return inspection;
}

Json jsonFrom(const Inspection& inspection) {
  Json event = Json::object();
  Json notes = Json::object();
  for (const InspectedField& field : inspection.event) {
    event[field.key] = field.value;
    notes[field.key] = field.note;
  }
  Json remarks = Json::array();
  for (const Remark& remark : inspection.remarks) {
    remarks.push_back(
        {{"key", remark.key.empty() ? Json() : Json(remark.key)}, {"message", remark.message}});
  }
  return {{"eventType", inspection.eventType},
          {"test", inspection.isTest},
          {"event", event},
          {"notes", notes},
          {"link", jsonFromLink(inspection.link)},
          {"remarks", remarks},
          {"size", inspection.size}};
}

}  // namespace sim
