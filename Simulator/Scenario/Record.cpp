#include "Simulator/Scenario/Record.h"

#include <string>

namespace sim {

Json schemaOf(const std::vector<Field>& fields) {
  Json properties = Json::object();
  Json required = Json::array();
  for (const Field& field : fields) {
    Json& property = properties[std::string(field.name)] = field.schema();
    property["description"] = field.meaning;
    if (field.isRequired) required.push_back(field.name);
  }
  Json schema = {{"type", "object"}, {"properties", properties}, {"additionalProperties", false}};
  if (!required.empty()) schema["required"] = required;
  return schema;
}

}  // namespace sim
