#include "Simulator/Scenario/NetworkReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "Simulator/Foundation/Base64.h"
#include "Simulator/Network/Location.h"

namespace sim {
namespace {

struct Body {
  std::string bytes;
  const char* type;
};

std::string readFile(const Node& node, const std::filesystem::path& folder) {
  const std::filesystem::path path = folder / node.text();
  const auto fail = [&](int code) {
    node.fail("cannot be read: " + path.string() + ": " + std::strerror(code),
              "a file, named from the scenario's folder on");
  };
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) fail(EISDIR);
  std::ifstream stream(path, std::ios::binary);
  if (!stream) fail(errno);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Body readBody(std::string_view kind, const Node& node, const std::filesystem::path& folder) {
  if (kind == "json") return {node.value().dump(), "application/json"};
  if (kind == "text") return {node.text(), "text/plain; charset=utf-8"};
  constexpr const char* bytes = "application/octet-stream";
  if (kind == "file") return {readFile(node, folder), bytes};
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

std::vector<zib::HTTPHeader> readHeaders(const Node& node) {
  if (!node.value().is_object()) node.failType("an object of texts");
  std::vector<zib::HTTPHeader> headers;
  for (const auto& [name, ignored] : node.value().items()) {
    const Node value = node.require(name);
    if (!isHeaderName(name))
      value.fail("this is no name of a header", "letters, digits and hyphens");
    const std::string lower = lowerCase(name);
    if (lower == "content-length" || lower == "transfer-encoding" || lower == "connection") {
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
  const Json& value = node.value();
  const std::int64_t status = value.is_number_integer() ? value.get<std::int64_t>() : 0;
  if (status < least || status > most) node.failType("an integer from 200 to 599");
  return static_cast<int>(status);
}

Answer readAnswer(const Node& node, const std::filesystem::path& folder) {
  node.objectOf({"status", "headers", "text", "json", "base64", "file", "fault"});
  Answer answer;
  if (const auto status = node.find("status")) answer.status = readStatus(*status);
  if (const auto headers = node.find("headers")) answer.headers = readHeaders(*headers);
  if (const auto fault = node.find("fault")) {
    answer.fault = static_cast<Fault>(fault->choice(faultNames()) + 1);
  }
  bool hasBody = false;
  for (const char* kind : {"text", "json", "base64", "file"}) {
    const auto found = node.find(kind);
    if (!found) continue;
    if (hasBody)
      found->fail("a second body", "one of " + quotedList({"text", "json", "base64", "file"}));
    hasBody = true;
    Body body = readBody(kind, *found, folder);
    answer.body = std::move(body.bytes);
    const bool hasType =
        std::any_of(answer.headers.begin(), answer.headers.end(),
                    [](const auto& header) { return lowerCase(header.name) == "content-type"; });
    if (!hasType) answer.headers.push_back({"Content-Type", body.type});
  }
  return answer;
}

void checkHost(const Node& site, std::string_view host) {
  if (host.empty() || host.find_first_of("/?#@ ") != std::string::npos ||
      listedHost(host).size() != host.size()) {
    site.fail("the key is no host name", "a host name, without scheme and port");
  }
}

Site readSite(const Node& node, const std::filesystem::path& folder) {
  if (!node.value().is_object()) node.failType("an object");
  Site site;
  for (const auto& [target, ignored] : node.value().items()) {
    const Node answer = node.require(target);
    if (!target.starts_with('/') || target.find_first_of("# \r\n") != std::string::npos) {
      answer.fail("the key is no path as sent", "a path from its slash on, with its query");
    }
    site.emplace(target, readAnswer(answer, folder));
  }
  return site;
}

}  // namespace

Sites readNetwork(const Node& node, const std::filesystem::path& folder) {
  if (!node.value().is_object()) node.failType("an object");
  Sites sites;
  for (const auto& [host, ignored] : node.value().items()) {
    const Node site = node.require(host);
    checkHost(site, host);
    if (!sites.emplace(listedHost(host), readSite(site, folder)).second) {
      site.fail("this host is listed twice", "each host once");
    }
  }
  return sites;
}

}  // namespace sim
