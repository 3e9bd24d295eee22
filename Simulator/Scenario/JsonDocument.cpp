#include "Simulator/Scenario/JsonDocument.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>

#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/TextEncoding.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace sim {
namespace {

// Whatever follows a scenario's values goes down into them by recursion. A `userInfo` that is as
// deep as the platform takes it still fits into a step or an expectation.
constexpr std::size_t deepestNesting = zib::maximumNesting + 16;

// Refuses what the parser accepts and a scenario must not have: the second of two members of one
// name, which the parser would keep, and values nested without end. Runs before the parser, whose
// own callback takes time with the square of a list's length.
class Checks final : public nlohmann::json_sax<Json> {
 public:
  // Without `repeated`, a second member of one name is refused.
  explicit Checks(std::vector<Way>* repeated = nullptr) : repeated_(repeated) {}

  bool null() override { return beginValue(); }
  bool boolean(bool) override { return beginValue(); }
  bool number_integer(number_integer_t) override { return beginValue(); }
  bool number_unsigned(number_unsigned_t) override { return beginValue(); }
  bool number_float(number_float_t, const string_t&) override { return beginValue(); }
  bool string(string_t&) override { return beginValue(); }
  bool binary(binary_t&) override { return beginValue(); }
  bool start_object(std::size_t) override { return open(true); }
  bool start_array(std::size_t) override { return open(false); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& key) override {
    open_.back().key = key;
    if (open_.back().keys.insert(key).second) return true;
    if (repeated_ == nullptr) {
      throw ScenarioError(pointer(open_.size()), "the key stands twice in one object",
                          "each key once");
    }
    repeated_->push_back(way(open_.size()));
    return true;
  }
  // Left to the parser, which says it better.
  bool parse_error(std::size_t, const std::string&, const Json::exception&) override {
    return false;
  }

 private:
  // An object or list whose end has not come yet.
  struct Open {
    bool isObject;
    std::set<std::string> keys;
    std::string key;
    std::size_t begun;
  };

  bool beginValue() {
    if (!open_.empty()) ++open_.back().begun;
    return true;
  }

  bool open(bool isObject) {
    beginValue();
    open_.push_back({isObject, {}, {}, 0});
    if (open_.size() <= deepestNesting) return true;
    if (repeated_ == nullptr) throw tooDeep();
    return false;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  [[nodiscard]] ScenarioError tooDeep() const {
    constexpr std::size_t shownLevels = 4;
    return {pointer(shownLevels), "nested too deep",
            std::to_string(deepestNesting) + " levels in a scenario"};
  }

  // To the value that was begun last, up to a level.
  [[nodiscard]] Way way(std::size_t levels) const {
    Way way;
    for (std::size_t level = 0; level < levels; ++level) {
      const Open& open = open_[level];
      way.push_back(open.isObject ? open.key : std::to_string(open.begun - 1));
    }
    return way;
  }

  [[nodiscard]] std::string pointer(std::size_t levels) const {
    std::string pointer;
    for (const std::string& key : way(levels)) pointer += '/' + escapedForPointer(key);
    return pointer;
  }

  std::vector<Way>* repeated_;
  std::vector<Open> open_;
};

}  // namespace

std::string textOfDocument(std::string_view file) {
  try {
    return textFrom({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()});
  } catch (const FormatError&) {
    return std::string(file);
  }
}

Json parseDocument(std::string_view text) {
  constexpr std::size_t longestDetail = 200;
  constexpr std::string_view whitespace = " \t\r\n";
  if (text.find_first_not_of(whitespace) == std::string_view::npos) {
    throw ScenarioError("", "there is no text", "a JSON document");
  }
  Checks checks;
  Json::sax_parse(text, &checks);
  try {
    return Json::parse(text);
  } catch (const Json::exception& error) {
    const std::string_view message = error.what();
    const std::size_t prefix = message.find("] ");
    const auto detail = prefix == std::string_view::npos ? message : message.substr(prefix + 2);
    const auto shown = zib::firstCharacters(detail, longestDetail);
    throw ScenarioError("", std::string(shown) + (shown.size() < detail.size() ? "…" : ""),
                        "a JSON document");
  }
}

std::vector<Way> repeatedKeys(std::string_view text) {
  std::vector<Way> repeated;
  Checks checks(&repeated);
  Json::sax_parse(text, &checks);
  return repeated;
}

void removeTargetBundle(Json& payload) {
  if (payload.is_object()) payload.erase("Simulator Target Bundle");
}

std::string readNamedFile(const Node& name, const std::filesystem::path& folder) {
  constexpr std::uintmax_t largest = std::uintmax_t{64} << 20U;
  const std::filesystem::path path = folder / name.text();
  const auto fail = [&](const std::string& problem) {
    name.fail(problem, "a file, named from the scenario's folder on");
  };
  const auto failToRead = [&](int code) {
    fail("cannot be read: " + path.string() + ": " + std::strerror(code));
  };
  // The system would read the name up to there.
  if (name.text().find('\0') != std::string::npos) fail("a NUL is in the name");
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) failToRead(EISDIR);
  // Pipes and devices have no end, and a pipe that nobody writes has no beginning.
  if (std::filesystem::exists(path, ignored) && !std::filesystem::is_regular_file(path, ignored)) {
    fail("is no regular file: " + path.string());
  }
  std::ifstream stream(path, std::ios::binary);
  if (!stream) failToRead(errno);
  if (std::filesystem::file_size(path, ignored) > largest)
    fail("holds more than 64 MB: " + path.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace sim
