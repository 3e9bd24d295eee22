// The schema and the reader agree: what one takes, the other takes, but for what no schema can say.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>

#include "Simulator/Json/Json.h"
#include "Simulator/Scenario/Reader.h"
#include "Simulator/Scenario/ScenarioError.h"

namespace {

using sim::Json;
namespace fs = std::filesystem;

// As much of JSON Schema as ours uses. A word that it does not know fails the test.
class Validator {
 public:
  explicit Validator(Json schema) : root_(std::move(schema)) {}

  [[nodiscard]] bool accepts(const Json& value) const { return accepts(root_, value); }

 private:
  [[nodiscard]] bool accepts(const Json& schema, const Json& value) const {
    if (schema.is_boolean()) return schema.get<bool>();
    const auto items = schema.items();
    return std::all_of(items.begin(), items.end(), [&](const auto& item) {
      return holds(item.key(), item.value(), schema, value);
    });
  }

  static bool isOfType(const Json& value, const std::string& type) {
    if (type == "object") return value.is_object();
    if (type == "array") return value.is_array();
    if (type == "string") return value.is_string();
    if (type == "boolean") return value.is_boolean();
    if (type == "null") return value.is_null();
    if (type == "integer") {
      return value.is_number_integer() ||
             (value.is_number() && value.get<double>() == std::floor(value.get<double>()));
    }
    EXPECT_EQ(type, "number");
    return value.is_number();
  }

  // NOLINTNEXTLINE(misc-no-recursion)
  [[nodiscard]] bool holds(const std::string& word, const Json& rule, const Json& schema,
                           const Json& value) const {
    static const std::vector<std::string> notes{
        "$schema", "$defs", "title", "description", "default", "contentEncoding", "properties"};
    if (word != "properties" && std::find(notes.begin(), notes.end(), word) != notes.end()) {
      return true;
    }
    const auto isAnyOf = [&](const Json& options, auto predicate) {
      return std::any_of(options.begin(), options.end(), predicate);
    };
    if (word == "type") {
      if (rule.is_string()) return isOfType(value, rule);
      return isAnyOf(rule, [&](const Json& type) { return isOfType(value, type); });
    }
    if (word == "enum") return isAnyOf(rule, [&](const Json& one) { return one == value; });
    if (word == "const") return rule == value;
    if (word == "anyOf") return isAnyOf(rule, [&](const Json& one) { return accepts(one, value); });
    if (word == "oneOf") {
      return std::count_if(rule.begin(), rule.end(),
                           [&](const Json& one) { return accepts(one, value); }) == 1;
    }
    if (word == "allOf") {
      return std::all_of(rule.begin(), rule.end(),
                         [&](const Json& one) { return accepts(one, value); });
    }
    if (word == "if") {
      const char* const then = accepts(rule, value) ? "then" : "else";
      return !schema.contains(then) || accepts(schema.at(then), value);
    }
    if (word == "then" || word == "else") return true;
    if (word == "$ref") {
      return accepts(root_.at(Json::json_pointer(rule.get<std::string>().substr(1))), value);
    }
    if (word == "properties") {
      if (!value.is_object()) return true;
      const auto items = rule.items();
      return std::all_of(items.begin(), items.end(), [&](const auto& item) {
        return !value.contains(item.key()) || accepts(item.value(), value.at(item.key()));
      });
    }
    if (word == "required") {
      if (!value.is_object()) return true;
      return std::all_of(rule.begin(), rule.end(),
                         [&](const Json& key) { return value.contains(key.get<std::string>()); });
    }
    if (word == "additionalProperties") {
      if (!value.is_object()) return true;
      const auto items = value.items();
      return std::all_of(items.begin(), items.end(), [&](const auto& item) {
        const bool isNamed =
            schema.contains("properties") && schema.at("properties").contains(item.key());
        return isNamed || accepts(rule, item.value());
      });
    }
    if (word == "items") {
      return !value.is_array() || std::all_of(value.begin(), value.end(), [&](const Json& each) {
        return accepts(rule, each);
      });
    }
    if (word == "minItems") return !value.is_array() || value.size() >= rule.get<std::size_t>();
    if (word == "pattern") {
      return !value.is_string() ||
             std::regex_search(value.get<std::string>(), std::regex(rule.get<std::string>()));
    }
    if (word == "minimum") return !value.is_number() || value.get<double>() >= rule.get<double>();
    if (word == "maximum") return !value.is_number() || value.get<double>() <= rule.get<double>();
    if (word == "minLength") {
      return !value.is_string() || value.get<std::string>().size() >= rule.get<std::size_t>();
    }
    ADD_FAILURE() << "the schema says \"" << word << "\", which this test does not know";
    return false;
  }

  Json root_;
};

struct File {
  fs::path path;
  Json scenario;
};

const std::vector<File>& files() {
  static const std::vector<File> all = [] {
    std::vector<File> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(ZIBSIM_SCENARIOS)) {
      const bool isRead = entry.path().parent_path().filename() == "Files";
      if (isRead || entry.path().extension() != ".json") continue;
      std::ifstream stream(entry.path());
      found.push_back({entry.path(), Json::parse(stream)});
    }
    std::sort(found.begin(), found.end(),
              [](const File& one, const File& other) { return one.path < other.path; });
    return found;
  }();
  return all;
}

// Everything that the reader has against it.
std::vector<std::string> errorsOf(const Json& scenario, const fs::path& folder) {
  std::vector<std::string> errors;
  try {
    static_cast<void>(sim::readScenario(scenario.dump(), "", folder));
  } catch (const sim::ScenarioErrors& found) {
    for (const sim::ScenarioError& error : found.all()) errors.emplace_back(error.what());
  } catch (const sim::ScenarioError& error) {
    errors.emplace_back(error.what());
  }
  return errors;
}

// What no schema says: it depends on other places, on files, or on what is written inside a text.
bool isBeyondSchemas(const std::string& error) {
  static const std::regex words(
      "hex|URL|class|scene|file|host|path|body|twice|version|MAJOR|base64|header|deep|a number "
      "from 0|status|/expect/\\S+: unknown key");
  return std::regex_search(error, words);
}

bool isBeyondSchemas(const std::vector<std::string>& errors) {
  return std::all_of(errors.begin(), errors.end(),
                     [](const std::string& error) { return isBeyondSchemas(error); });
}

TEST(SchemaTest, TakesEveryScenarioOfTheTree) {
  const Validator validator(sim::scenarioSchema());
  ASSERT_GT(files().size(), 100U);
  for (const File& file : files()) EXPECT_TRUE(validator.accepts(file.scenario)) << file.path;
}

// All places in a scenario, from the root down.
void collectPlaces(const Json& value, const Json::json_pointer& place,
                   std::vector<Json::json_pointer>& places) {
  places.push_back(place);
  if (value.is_object()) {
    for (const auto& [key, member] : value.items()) collectPlaces(member, place / key, places);
  } else if (value.is_array()) {
    for (std::size_t index = 0; index < value.size(); ++index) {
      collectPlaces(value[index], place / index, places);
    }
  }
}

std::vector<Json> mutationsAt(const Json& scenario, const Json::json_pointer& place) {
  std::vector<Json> mutated;
  const auto with = [&](const Json& value) {
    mutated.push_back(scenario);
    mutated.back()[place] = value;
  };
  for (const Json& value : {Json(nullptr), Json(true), Json(-5), Json(1.5), Json("zzz"),
                            Json::array({1}), Json{{"zzz", 1}}}) {
    with(value);
  }
  if (scenario.at(place).is_object()) {
    Json more = scenario.at(place);
    more["zzz"] = 1;
    with(more);
    for (const auto& [key, value] : scenario.at(place).items()) {
      Json fewer = scenario.at(place);
      fewer.erase(key);
      with(fewer);
    }
  }
  return mutated;
}

// Each place of each scenario is too much for a test of every run: the same part of them each time.
TEST(SchemaTest, RefusesWhatTheReaderRefuses) {
  const Validator validator(sim::scenarioSchema());
  constexpr std::size_t most = 6000;
  std::size_t count = 0;
  std::size_t refused = 0;
  std::size_t turn = 0;
  for (const File& file : files()) {
    std::vector<Json::json_pointer> places;
    collectPlaces(file.scenario, Json::json_pointer(), places);
    for (const Json::json_pointer& place : places) {
      if (turn++ % 7 != 0 || count > most) continue;
      for (const Json& mutated : mutationsAt(file.scenario, place)) {
        ++count;
        const auto errors = errorsOf(mutated, file.path.parent_path());
        const bool isTaken = validator.accepts(mutated);
        refused += isTaken ? 0 : 1;
        if (isTaken == errors.empty()) continue;
        if (isTaken && isBeyondSchemas(errors)) continue;
        ADD_FAILURE() << file.path << " at \"" << place.to_string() << "\": the schema "
                      << (isTaken ? "takes" : "refuses") << " " << mutated[place].dump()
                      << (errors.empty() ? std::string(", the reader takes it")
                                         : ", the reader says " + errors.front());
      }
    }
  }
  EXPECT_GT(refused, 1000U);
}

}  // namespace
