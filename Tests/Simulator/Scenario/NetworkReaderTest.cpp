#include "Simulator/Scenario/NetworkReader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "Simulator/Scenario/Reading.h"

namespace {

using sim::Fault;
using sim::Json;
using sim::Sites;

Sites read(const std::string& text, const std::filesystem::path& folder = {}) {
  const Json json = Json::parse(text);
  sim::Reading reading;
  reading.folder = folder;
  Sites sites = sim::kinds::network().read(sim::Node(json, "/network"), reading);
  if (!reading.errors.empty()) throw sim::ScenarioErrors(reading.errors);
  return sites;
}

// What is wrong with the section.
std::string complaint(const std::string& text, const std::filesystem::path& folder = {}) {
  try {
    read(text, folder);
  } catch (const sim::ScenarioError& error) {
    return error.what();
  }
  return "nothing";
}

std::string complaintAboutAnswer(const std::string& answer) {
  return complaint(R"({"h.example": {"/p": )" + answer + "}}");
}

sim::Reply answer(const std::string& text) {
  return read(R"({"h.example": {"/p": )" + text + "}}").at("h.example").at("/p");
}

TEST(NetworkReaderTest, AnAnswerIsEmptyAndFineUnlessSaidOtherwise) {
  const auto empty = answer("{}");
  EXPECT_EQ(empty.status, 200);
  EXPECT_EQ(empty.body, "");
  EXPECT_TRUE(empty.headers.empty());
  EXPECT_EQ(empty.fault, Fault::none);
}

TEST(NetworkReaderTest, ReadsEveryKindOfBody) {
  EXPECT_EQ(answer(R"({"text": "Zoë"})").body, "Zoë");
  EXPECT_EQ(answer(R"({"json": {"a": [1, null]}})").body, R"({"a":[1,null]})");
  EXPECT_EQ(answer(R"({"json": null})").body, "null");
  EXPECT_EQ(answer(R"({"base64": "AAH/"})").body, std::string("\x00\x01\xFF", 3));
  EXPECT_EQ(answer(R"({"base64": ""})").body, "");
}

TEST(NetworkReaderTest, ReadsEveryFault) {
  EXPECT_EQ(answer(R"({"fault": "hang"})").fault, Fault::hang);
  EXPECT_EQ(answer(R"({"fault": "reset"})").fault, Fault::reset);
  EXPECT_EQ(answer(R"({"fault": "truncate"})").fault, Fault::truncate);
  EXPECT_EQ(answer(R"({"fault": "tls"})").fault, Fault::tls);
  EXPECT_EQ(answer(R"({"fault": "refuse"})").fault, Fault::refuse);
  EXPECT_EQ(answer(R"({"fault": "unknownHost"})").fault, Fault::unknownHost);
}

TEST(NetworkReaderTest, NamesTheTypeOfABodyUnlessAHeaderDoes) {
  const auto json = answer(R"({"json": 1})");
  ASSERT_EQ(json.headers.size(), 1U);
  EXPECT_EQ(json.headers[0].value, "application/json");
  const auto other = answer(R"({"json": 1, "headers": {"content-type": "text/html"}})");
  ASSERT_EQ(other.headers.size(), 1U);
  EXPECT_EQ(other.headers[0].value, "text/html");
}

TEST(NetworkReaderTest, ReadsAFileFromTheFolder) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("zib-network-reader-" + std::to_string(::getpid()));
  std::filesystem::create_directory(folder);
  std::ofstream(folder / "body") << "from a file";
  const auto sites = read(R"({"h.example": {"/p": {"file": "body"}}})", folder);
  EXPECT_EQ(sites.at("h.example").at("/p").body, "from a file");
  EXPECT_EQ(
      complaint(R"({"h.example": {"/p": {"file": "none"}}})", folder),
      "/network/h.example/~1p/file: cannot be read: " + (folder / "none").string() +
          ": No such file or directory; allowed: a file, named from the scenario's folder on");
  EXPECT_EQ(complaint(R"({"h.example": {"/p": {"file": ""}}})", folder),
            "/network/h.example/~1p/file: cannot be read: " + (folder / "").string() +
                ": Is a directory; allowed: a file, named from the scenario's folder on");
  std::filesystem::remove_all(folder);
}

TEST(NetworkReaderTest, TellsHostsApartWithoutTheirCase) {
  EXPECT_TRUE(read(R"({"H.Example": {}})").contains("h.example"));
  EXPECT_EQ(complaint(R"({"h.example": {}, "H.example": {}})"),
            "/network/h.example: this host is listed twice; allowed: each host once");
}

TEST(NetworkReaderTest, ComplainsAboutHosts) {
  for (const std::string host : {"", "https://h.example", "h.example:80", "h.example/p", "a b"}) {
    EXPECT_NE(complaint(Json({{host, Json::object()}}).dump()).find("the key is no host name"),
              std::string::npos)
        << host;
  }
  EXPECT_EQ(complaint("[]"), "/network: got a list; allowed: an object");
  EXPECT_EQ(complaint(R"({"h": 1})"), "/network/h: got 1; allowed: an object");
}

TEST(NetworkReaderTest, ComplainsAboutPaths) {
  for (const std::string path : {"", "p", "?q", "/p#part", "/a b"}) {
    EXPECT_NE(complaint(Json({{"h", {{path, Json::object()}}}}).dump()).find("the key is no path"),
              std::string::npos)
        << path;
  }
}

TEST(NetworkReaderTest, ComplainsAboutAnswers) {
  const std::string at = "/network/h.example/~1p";
  EXPECT_EQ(complaintAboutAnswer("1"), at + ": got 1; allowed: an object");
  EXPECT_EQ(complaintAboutAnswer(R"({"body": ""})"),
            at + "/body: unknown key; allowed: \"status\", \"headers\", \"text\", \"json\", "
                 "\"base64\", \"file\", \"fault\"");
  EXPECT_EQ(complaintAboutAnswer(R"({"text": "", "json": 1})"),
            at + "/json: a second body; allowed: one of \"text\", \"json\", \"base64\", \"file\"");
  EXPECT_EQ(complaintAboutAnswer(R"({"base64": "A"})"), at + "/base64: got \"A\"; allowed: base64");
  EXPECT_EQ(complaintAboutAnswer(R"({"fault": "slow"})"),
            at + "/fault: got \"slow\"; allowed: \"hang\", \"reset\", \"truncate\", \"tls\", "
                 "\"refuse\", \"unknownHost\"");
  for (const char* status : {"199", "600", "-1", "200.5", "\"200\""}) {
    EXPECT_EQ(complaintAboutAnswer(std::string(R"({"status": )") + status + "}"),
              at + "/status: got " + status + "; allowed: an integer from 200 to 599");
  }
}

TEST(NetworkReaderTest, ComplainsAboutHeaders) {
  const std::string at = "/network/h.example/~1p/headers";
  EXPECT_EQ(complaintAboutAnswer(R"({"headers": []})"),
            at + ": got a list; allowed: an object of texts");
  EXPECT_EQ(complaintAboutAnswer(R"({"headers": {"A": 1}})"), at + "/A: got 1; allowed: a text");
  EXPECT_EQ(complaintAboutAnswer(R"({"headers": {"A b": ""}})"),
            at + "/A b: this is no name of a header; allowed: letters, digits and hyphens");
  EXPECT_EQ(complaintAboutAnswer(R"({"headers": {"A": "x\r\ny"}})"),
            at + "/A: got \"x\\r\\ny\"; allowed: a text of one line");
  EXPECT_EQ(complaintAboutAnswer(R"({"headers": {"content-LENGTH": "1"}})"),
            at + "/content-LENGTH: the server sets this header itself; allowed: other headers");
}

}  // namespace
