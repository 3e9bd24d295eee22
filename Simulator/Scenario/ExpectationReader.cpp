#include "Simulator/Scenario/ExpectationReader.h"

namespace sim {
namespace {

void checkItem(const Node& item, Reading& reading) {
  if (!item.value().is_object()) item.failType("an object");
  if (const auto absent = item.find("absent")) {
    item.checkKeys({"absent"}, reading.errors);
    if (!absent->value().is_object()) absent->failType("an object");
  }
}

}  // namespace

const Kind<Json>& kinds::expectations() {
  static const Kind<Json> kind{[](const Node& node, Reading& reading) {
                                 for (const Node& item : node.list()) {
                                   reading.collectErrorOf([&] { checkItem(item, reading); });
                                 }
                                 return node.value();
                               },
                               {{"type", "array"}, {"items", {{"type", "object"}}}}};
  return kind;
}

}  // namespace sim
