#include "Simulator/Scenario/Kind.h"

namespace sim {

Schema schemaOfType(const char* type) {
  return [type] { return Json{{"type", type}}; };
}

Schema schemaOrNull(Schema schema) {
  return [schema = std::move(schema)] { return Json{{"anyOf", {schema(), {{"type", "null"}}}}}; };
}

}  // namespace sim
