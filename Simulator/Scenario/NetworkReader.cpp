#include "Simulator/Scenario/NetworkReader.h"

#include <algorithm>
#include <optional>

#include "Simulator/Foundation/Base64.h"
#include "Simulator/Network/Location.h"
#include "Simulator/Scenario/JsonDocument.h"
#include "Simulator/Scenario/Kinds.h"
#include "Simulator/Scenario/Record.h"

namespace sim {
namespace {

struct Body {
  std::string bytes;
  const char* type;
};

Body readBody(std::string_view kind, const Node& node, const std::filesystem::path& folder) {
  if (kind == "json") return {node.value().dump(), "application/json"};
  if (kind == "text") return {node.text(), "text/plain; charset=utf-8"};
  constexpr const char* bytes = "application/octet-stream";
  if (kind == "file") return {readNamedFile(node, folder), bytes};
  const auto decoded = bytesFromBase64(node.text());
  if (!decoded) node.failType("base64");
  return {{decoded->begin(), decoded->end()}, bytes};
}

bool isHeaderName(std::string_view name) {
  constexpr std::string_view others = "!#$%&'*+-.^_`|~";
  return !name.empty() && std::all_of(name.begin(), name.end(), [&](unsigned char character) {
    return character < 0x80 &&
           (std::isalnum(character) != 0 ||
            others.find(static_cast<char>(character)) != std::string_view::npos);
  });
}

bool isHeaderValue(std::string_view value) {
  return std::none_of(value.begin(), value.end(), [](unsigned char character) {
    return (character < ' ' && character != '\t') || character == 0x7F;
  });
}

const std::vector<std::string_view>& headersOfTheServer() {
  static const std::vector<std::string_view> names{"content-length", "transfer-encoding",
                                                   "connection"};
  return names;
}

std::vector<HTTPHeader> readHeaders(const Node& node) {
  if (!node.value().is_object()) node.failType("an object of texts");
  std::vector<HTTPHeader> headers;
  for (const auto& [name, ignored] : node.value().items()) {
    const Node value = node.require(name);
    if (!isHeaderName(name))
      value.fail("this is no name of a header", "letters, digits and hyphens");
    const auto& reserved = headersOfTheServer();
    if (std::find(reserved.begin(), reserved.end(), lowerCase(name)) != reserved.end()) {
      value.fail("the server sets this header itself", "other headers");
    }
    if (!isHeaderValue(value.text())) value.failType("a text of one line");
    headers.push_back({name, value.text()});
  }
  return headers;
}

int readStatus(const Node& node) {
  constexpr std::int64_t least = 200;
  constexpr std::int64_t most = 599;
  const bool isStatus = node.isIntegral() && node.value() >= least && node.value() <= most;
  if (!isStatus) node.failType("an integer from 200 to 599");
  return node.value().get<int>();
}

// Each gives a body; a reply has one of them at most.
const std::vector<std::string_view>& bodyKinds() {
  static const std::vector<std::string_view> kinds{"text", "json", "base64", "file"};
  return kinds;
}

void readBodyInto(Reply& reply, const Node& node, const std::filesystem::path& folder) {
  std::optional<Node> found;
  for (const std::string_view kind : bodyKinds()) {
    const auto body = node.find(kind);
    if (!body) continue;
    if (found) body->fail("a second body", "one of " + quotedList(bodyKinds()));
    found = body;
    Body read = readBody(kind, *body, folder);
    reply.body = std::move(read.bytes);
    const bool hasType = headerValue(reply.headers, "content-type") != nullptr;
    if (!hasType) reply.headers.push_back({"Content-Type", read.type});
  }
}

// A regular expression for the text in capitals and without.
std::string inAnyCase(std::string_view text) {
  std::string pattern;
  for (const char letter : text) {
    const auto capital = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    pattern += capital == letter ? std::string{letter} : std::string{'[', letter, capital, ']'};
  }
  return pattern;
}

Json schemaOfHeaders() {
  std::string reserved;
  for (const std::string_view name : headersOfTheServer()) {
    reserved += (reserved.empty() ? "" : "|") + inAnyCase(name);
  }
  return {
      {"type", "object"},
      {"propertyNames", {{"pattern", "^(?!(?:" + reserved + ")$)[A-Za-z0-9!#$%&'*+.^_`|~-]+$"}}},
      {"additionalProperties",
       {{"type", "string"}, {"pattern", R"(^[^\u0000-\u0008\u000a-\u001f\u007f]*$)"}}}};
}

const Record<Reply>& replyRecord() {
  static const Kind<int> status{
      [](const Node& node, Reading&) { return readStatus(node); },
      [] {
        return Json{{"type", "integer"}, {"minimum", 200}, {"maximum", 599}};
      },
      [](const int& value) { return Json(value); }};
  static const Kind<std::vector<HTTPHeader>> headers{
      [](const Node& node, Reading&) { return readHeaders(node); }, &schemaOfHeaders};
  // Groups of four digits, of which the last may be filled up; white space is anywhere.
  static constexpr const char* base64 =
      R"(^[ \t\r\n]*(?:(?:[A-Za-z0-9+/][ \t\r\n]*){4})*)"
      R"((?:(?:[A-Za-z0-9+/][ \t\r\n]*){2}[A-Za-z0-9+/=][ \t\r\n]*=[ \t\r\n]*)?$)";
  // Bodies are read when the headers are known.
  static const auto isReadLater = [](const Node&, Reading&, Reply&) {};
  static const auto record =
      Record<Reply>()
          .optional("status", &Reply::status, status, "the status")
          .optional("headers", &Reply::headers, headers, "headers, each a text")
          .custom({"text", "the body as text", false, schemaOfType("string")}, isReadLater)
          .custom({"json", "the body as JSON", false, [] { return Json::object(); }}, isReadLater)
          .custom({"base64", "the body as bytes", false,
                   [] {
                     return Json{
                         {"type", "string"}, {"contentEncoding", "base64"}, {"pattern", base64}};
                   }},
                  isReadLater)
          .custom({"file", "a file that is the body, named from the scenario's folder on", false,
                   schemaOfType("string")},
                  isReadLater)
          .optional("fault", &Reply::fault, kinds::oneOf<Fault>(), "how the exchange goes wrong");
  return record;
}

// With one body at most.
Json schemaOfReply() {
  Json twoBodies = Json::array();
  const auto& kinds = bodyKinds();
  for (auto one = kinds.begin(); one != kinds.end(); ++one) {
    for (auto other = one + 1; other != kinds.end(); ++other) {
      twoBodies.push_back({{"required", {*one, *other}}});
    }
  }
  Json schema = schemaOf(replyRecord().fields());
  schema["not"] = {{"anyOf", twoBodies}};
  return schema;
}

Reply readReply(const Node& node, Reading& reading) {
  Reply reply = replyRecord().read(node, reading);
  readBodyInto(reply, node, reading.folder);
  return reply;
}

// Without a port, but with the colons inside of brackets.
constexpr const char* hostPattern = R"(^(?:[^/?#@ :\[][^/?#@ :]*|\[[^/?#@ \]]*(?:\][^/?#@ :]*)?)$)";
constexpr const char* targetPattern = R"(^/[^# \r\n]*$)";

void checkHost(const Node& site, std::string_view host) {
  if (host.empty() || host.find_first_of("/?#@ ") != std::string::npos ||
      listedHost(host).size() != host.size()) {
    site.fail("the key is no host name", "a host name, without scheme and port");
  }
}

void checkTarget(const Node& answer, std::string_view target) {
  if (!target.starts_with('/') || target.find_first_of("# \r\n") != std::string::npos) {
    answer.fail("the key is no path as sent", "a path from its slash on, with its query");
  }
}

Json schemaOfSites() {
  return {{"type", "object"},
          {"propertyNames", {{"pattern", hostPattern}}},
          {"additionalProperties",
           {{"type", "object"},
            {"propertyNames", {{"pattern", targetPattern}}},
            {"additionalProperties", schemaOfReply()}}}};
}

Site readSite(const Node& node, Reading& reading) {
  if (!node.value().is_object()) node.failType("an object");
  Site site;
  for (const auto& listed : node.value().items()) {
    const std::string& target = listed.key();
    reading.collectErrorOf([&] {
      const Node answer = node.require(target);
      checkTarget(answer, target);
      site.emplace(target, readReply(answer, reading));
    });
  }
  return site;
}

Sites readSites(const Node& node, Reading& reading) {
  if (!node.value().is_object()) node.failType("an object");
  Sites sites;
  for (const auto& listed : node.value().items()) {
    const std::string& host = listed.key();
    reading.collectErrorOf([&] {
      const Node site = node.require(host);
      checkHost(site, host);
      if (!sites.emplace(listedHost(host), readSite(site, reading)).second) {
        site.fail("this host is listed twice", "each host once");
      }
    });
  }
  return sites;
}

}  // namespace

const Kind<Sites>& kinds::network() {
  static const Kind<Sites> kind{&readSites, &schemaOfSites};
  return kind;
}

}  // namespace sim
