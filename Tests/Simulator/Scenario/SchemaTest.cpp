// The schema and the reader agree: what one takes, the other takes, but for what no schema can say.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <ostream>
#include <regex>

#include "Simulator/Json/Json.h"
#include "Simulator/Scenario/Reader.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "Tests/Support/RowName.h"

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

  template <class Predicate>
  static bool ofAll(const Json& object, Predicate predicate) {
    const auto items = object.items();
    return std::all_of(items.begin(), items.end(),
                       [&](const auto& item) { return predicate(item.key(), item.value()); });
  }

  // Made once each.
  static const std::regex& expressionOf(const std::string& pattern) {
    static std::map<std::string, std::regex> expressions;
    const auto known = expressions.find(pattern);
    return known != expressions.end()
               ? known->second
               : expressions.emplace(pattern, std::regex(pattern)).first->second;
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
      return !value.is_object() || ofAll(rule, [&](const std::string& key, const Json& member) {
        return !value.contains(key) || accepts(member, value.at(key));
      });
    }
    if (word == "required") {
      if (!value.is_object()) return true;
      return std::all_of(rule.begin(), rule.end(),
                         [&](const Json& key) { return value.contains(key.get<std::string>()); });
    }
    if (word == "additionalProperties") {
      return !value.is_object() || ofAll(value, [&](const std::string& key, const Json& member) {
        return (schema.contains("properties") && schema.at("properties").contains(key)) ||
               accepts(rule, member);
      });
    }
    if (word == "items") {
      return !value.is_array() || std::all_of(value.begin(), value.end(), [&](const Json& each) {
        return accepts(rule, each);
      });
    }
    if (word == "not") return !accepts(rule, value);
    if (word == "dependentSchemas") {
      return !value.is_object() || ofAll(rule, [&](const std::string& key, const Json& dependent) {
        return !value.contains(key) || accepts(dependent, value);
      });
    }
    if (word == "propertyNames") {
      return !value.is_object() || ofAll(value, [&](const std::string& key, const Json&) {
        return accepts(rule, Json(key));
      });
    }
    if (word == "minItems") return !value.is_array() || value.size() >= rule.get<std::size_t>();
    if (word == "pattern") {
      return !value.is_string() ||
             std::regex_search(value.get<std::string>(), expressionOf(rule.get<std::string>()));
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

// What no schema says: it depends on other places, on files, or on the grammar of a text.
bool isBeyondSchemas(const std::string& error) {
  static const std::regex words("a URL|class|scene|cannot be read|twice|deep|a part of one of");
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

struct Verdict {
  const char* name;
  const char* scenario;
  bool isTaken;

  // How the test runner shows it.
  friend std::ostream& operator<<(std::ostream& out, const Verdict& verdict) {
    return out << verdict.scenario;
  }
};

class AgreementTest : public testing::TestWithParam<Verdict> {};

TEST_P(AgreementTest, IsOfSchemaAndReader) {
  const Json scenario = Json::parse(GetParam().scenario);
  const auto errors = errorsOf(scenario, ZIBSIM_SCENARIOS);
  EXPECT_EQ(errors.empty(), GetParam().isTaken) << (errors.empty() ? "" : errors.front());
  EXPECT_EQ(Validator(sim::scenarioSchema()).accepts(scenario), GetParam().isTaken);
}

INSTANTIATE_TEST_SUITE_P(
    Expectation, AgreementTest,
    testing::Values(
        Verdict{"KeyOfItsKind", R"({"steps": [], "expect": [{"kind": "log", "level": "info"}]})",
                true},
        Verdict{"KeyOfAnotherKind", R"({"steps": [], "expect": [{"kind": "log", "data": {}}]})",
                false},
        Verdict{"KeyOfAnotherKindInAbsent",
                R"({"steps": [], "expect": [{"absent": {"kind": "log", "data": {}}}]})", false},
        Verdict{"KeyOfAnotherKindInUnordered",
                R"({"steps": [], "expect": [{"unordered": [{"kind": "log", "data": {}}]}]})",
                false},
        Verdict{"KeyOfAnotherKindInCount",
                R"({"steps": [], "expect": [{"count": 1, "of": {"kind": "log", "data": {}}}]})",
                false},
        Verdict{"KeysOfNoKindTogether",
                R"({"steps": [], "expect": [{"index": 1, "message": "a"}]})", false},
        Verdict{"NoKind", R"({"steps": [], "expect": [{"operation": "openURL"}]})", true},
        Verdict{"NoKey", R"({"steps": [], "expect": [{}]})", true},
        Verdict{"NothingUnordered", R"({"steps": [], "expect": [{"unordered": []}]})", false},
        Verdict{"PartOfAKind",
                R"({"steps": [], "expect": [{"kind": {"contains": "o"}, "message": "a"}]})", true},
        Verdict{"Operation",
                R"({"steps": [], "expect": [{"kind": "core", "operation": "openURL"}]})", false},
        Verdict{"Level", R"({"steps": [], "expect": [{"kind": "log", "level": "debug"}]})", false},
        Verdict{"EventField",
                R"({"steps": [], "expect": [{"kind": "event", "data": {"clubs": "a"}}]})", false},
        Verdict{"ErrorField",
                R"({"steps": [], "expect": [{"kind": "log", "error": {"text": "a"}}]})", false},
        Verdict{"IndexAsText", R"({"steps": [], "expect": [{"kind": "step", "index": "1"}]})",
                false},
        Verdict{"ThreadAsNumber", R"({"steps": [], "expect": [{"thread": 1}]})", false},
        Verdict{"WholeCount", R"({"steps": [], "expect": [{"count": 1.0, "of": {}}]})", true},
        Verdict{"CountWithExponent", R"({"steps": [], "expect": [{"count": 1e3, "of": {}}]})",
                true},
        Verdict{"HugeCount", R"({"steps": [], "expect": [{"count": 1e300, "of": {}}]})", true},
        Verdict{"NegativeCount", R"({"steps": [], "expect": [{"count": -1, "of": {}}]})", false},
        Verdict{"HalfACount", R"({"steps": [], "expect": [{"count": 1.5, "of": {}}]})", false},
        Verdict{"CountWithoutOf", R"({"steps": [], "expect": [{"count": 1}]})", false},
        Verdict{"CountInUnordered",
                R"({"steps": [], "expect": [{"unordered": [{"count": 1, "of": {}}]}]})", false}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    Network, AgreementTest,
    testing::Values(
        Verdict{"Host", R"({"steps": [], "network": {"A.example": {"/p?q=1": {}}}})", true},
        Verdict{"HostOfNumbers", R"({"steps": [], "network": {"[::1]": {}}})", true},
        Verdict{"EmptyHost", R"({"steps": [], "network": {"": {}}})", false},
        Verdict{"HostWithPort", R"({"steps": [], "network": {"a.example:80": {}}})", false},
        Verdict{"HostWithPortAndPath", R"({"steps": [], "network": {"A.B:80/x": {}}})", false},
        Verdict{"HostOfNumbersWithPort", R"({"steps": [], "network": {"[::1]:80": {}}})", false},
        Verdict{"HostWithScheme", R"({"steps": [], "network": {"https://a.example": {}}})", false},
        Verdict{"HostWithSpace", R"({"steps": [], "network": {"a b": {}}})", false},
        Verdict{"PathWithoutSlash", R"({"steps": [], "network": {"a": {"p": {}}}})", false},
        Verdict{"PathWithFragment", R"({"steps": [], "network": {"a": {"/p#a": {}}}})", false},
        Verdict{"PathWithSpace", R"({"steps": [], "network": {"a": {"/a b": {}}}})", false},
        Verdict{"TwoBodies", R"({"steps": [], "network": {"a": {"/": {"text": "", "json": 1}}}})",
                false},
        Verdict{"ThreeBodies",
                R"({"steps": [], "network": {"a": {"/": {"text": "", "json": 1, "base64": ""}}}})",
                false},
        Verdict{"Base64", R"({"steps": [], "network": {"a": {"/": {"base64": "AAH/ Ag = =\n"}}}})",
                true},
        Verdict{"EmptyBase64", R"({"steps": [], "network": {"a": {"/": {"base64": ""}}}})", true},
        Verdict{"ThreeDigitsOfBase64",
                R"({"steps": [], "network": {"a": {"/": {"base64": "AAH"}}}})", false},
        Verdict{"NoDigitOfBase64", R"({"steps": [], "network": {"a": {"/": {"base64": "AA?="}}}})",
                false},
        Verdict{"DigitAfterTheEndOfBase64",
                R"({"steps": [], "network": {"a": {"/": {"base64": "AA=A"}}}})", false},
        Verdict{"Header",
                R"({"steps": [], "network": {"a": {"/": {"headers": {"X-a_b": "c\td ä"}}}}})",
                true},
        Verdict{"HeaderNameWithSpace",
                R"({"steps": [], "network": {"a": {"/": {"headers": {"X a": ""}}}}})", false},
        Verdict{"HeaderNameWithLineBreak",
                R"({"steps": [], "network": {"a": {"/": {"headers": {"X\r\nY": ""}}}}})", false},
        Verdict{"EmptyHeaderName",
                R"({"steps": [], "network": {"a": {"/": {"headers": {"": ""}}}}})", false},
        Verdict{"HeaderValueWithLineBreak",
                R"({"steps": [], "network": {"a": {"/": {"headers": {"X": "a\r\nY: b"}}}}})",
                false},
        Verdict{"HeaderOfTheServer",
                R"({"steps": [], "network": {"a": {"/": {"headers": {"Content-Length": "1"}}}}})",
                false},
        Verdict{"HeaderThatBeginsLikeOneOfTheServer",
                R"({"steps": [], "network": {"a": {"/": {"headers": {"Connection-ID": "1"}}}}})",
                true},
        Verdict{"WholeStatus", R"({"steps": [], "network": {"a": {"/": {"status": 204.0}}}})",
                true},
        Verdict{"Status", R"({"steps": [], "network": {"a": {"/": {"status": 199}}}})", false}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    Other, AgreementTest,
    testing::Values(
        Verdict{"URL", R"({"steps": [{"do": "openURL", "url": "a:b?c[]=%20"}],
                           "device": {"osVersion": "16.0"}})",
                true},
        Verdict{"URLWithSpace", R"({"steps": [{"do": "openURL", "url": "a b"}]})", false},
        Verdict{"EmptyURL", R"({"steps": [{"do": "openURL", "url": ""}]})", false},
        Verdict{"URLWithPercent", R"({"steps": [{"do": "openURL", "url": "a:%zz"}]})", false},
        Verdict{"ForwardingToNothing",
                R"({"steps": [], "host": {"appDelegate": {"class": "A", "forwarding": "target"}}})",
                false},
        Verdict{"ForwardingToNull",
                R"({"steps": [], "host": {"appDelegate": {"class": "A", "forwarding": "target",
                                                          "forwardsTo": null}}})",
                false},
        Verdict{"Forwarding",
                R"({"steps": [], "host": {"appDelegate": {"class": "A", "forwarding": "target",
                                                          "forwardsTo": {"class": "B"}}}})",
                true},
        Verdict{"WholeOptions",
                R"({"steps": [], "host": {"appDelegate": {"class": "A", "options": 3.0}}})", true},
        Verdict{"HugeOptions",
                R"({"steps": [], "host": {"appDelegate": {"class": "A", "options": 1e30}}})",
                false},
        Verdict{"ClassWithNul", R"({"steps": [], "host": {"appDelegate": {"class": "A\u0000"}}})",
                false},
        Verdict{"TwoPayloads", R"({"steps": [{"do": "present", "userInfo": {},
                                              "userInfoFile": "payload/domain-user.json"}]})",
                false},
        Verdict{"NoPayload", R"({"steps": [{"do": "present"}]})", false}),
    test::rowName);

}  // namespace
