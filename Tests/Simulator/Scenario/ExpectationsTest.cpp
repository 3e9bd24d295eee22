#include "Simulator/Scenario/Expectations.h"

#include <gtest/gtest.h>

namespace {

using sim::Json;

std::vector<Json> timeline(const std::vector<Json>& entries) {
  std::vector<Json> result;
  for (Json entry : entries) {
    entry.update({{"t", 0.0}, {"thread", "main"}});
    result.push_back(entry);
  }
  return result;
}

const Json first = {{"kind", "log"}, {"message", "first"}};
const Json second = {{"kind", "log"}, {"message", "second"}};
const Json event = {{"kind", "event"}, {"data", {{"club", "gold"}, {"list", {1, {{"a", 1}}}}}}};

bool areMet(const Json& expectations) {
  return sim::unmetExpectations(expectations, timeline({first, event, second})).empty();
}

TEST(ExpectationsTest, AreMatchedInOrder) {
  EXPECT_TRUE(areMet({first, second}));
  EXPECT_TRUE(areMet({first, event, second}));
  EXPECT_FALSE(areMet({second, first}));
}

TEST(ExpectationsTest, MatchEachEntryOnce) { EXPECT_FALSE(areMet({first, first})); }

TEST(ExpectationsTest, MatchObjectsKeyByKey) {
  EXPECT_TRUE(areMet({{{"data", Json::object()}}}));
  EXPECT_TRUE(areMet({{{"data", {{"club", "gold"}}}}}));
  EXPECT_FALSE(areMet({{{"data", {{"club", "silver"}}}}}));
  EXPECT_FALSE(areMet({{{"data", {{"node", nullptr}}}}}));
}

TEST(ExpectationsTest, MatchOtherValuesExactly) {
  EXPECT_TRUE(areMet({{{"data", {{"list", {1, {{"a", 1}}}}}}}}));
  EXPECT_FALSE(areMet({{{"data", {{"list", {1}}}}}}));
  EXPECT_FALSE(areMet({{{"data", {{"list", {1, Json::object()}}}}}}));
  EXPECT_FALSE(areMet({{{"message", "fir"}}}));
  EXPECT_FALSE(areMet({{{"message", nullptr}}}));
  EXPECT_FALSE(areMet({{{"data", "gold"}}}));
}

TEST(ExpectationsTest, OfAbsenceLookAtEveryEntry) {
  EXPECT_TRUE(areMet({second, {{"absent", {{"kind", "problem"}}}}}));
  EXPECT_FALSE(areMet({second, {{"absent", first}}}));
  EXPECT_FALSE(areMet({{{"absent", Json::object()}}}));
}

TEST(ExpectationsTest, OfAbsenceDoNotMoveOn) {
  EXPECT_TRUE(areMet({{{"absent", {{"kind", "problem"}}}}, first, second}));
}

TEST(ExpectationsTest, ThatAreNotMetComeWithTheNearestEntries) {
  const auto unmet = sim::unmetExpectations({{{"kind", "log"}, {"message", "third"}}},
                                            timeline({first, event, second}));
  ASSERT_EQ(unmet.size(), 1U);
  EXPECT_EQ(unmet.front(),
            R"(expectation 0 is not met: {"kind":"log","message":"third"}
  nearest entries:
    {"t":0.0,"thread":"main","kind":"log","message":"first"}
      message is "first"; expected: "third"
    {"t":0.0,"thread":"main","kind":"log","message":"second"}
      message is "second"; expected: "third")");
}

TEST(ExpectationsTest, ThatAreNotMetComeWithTheEntryFirstWhoseTextDiffersLeast) {
  const Json slip = {{"kind", "log"}, {"message", "secund"}};
  const std::string miss =
      sim::unmetExpectations(Json::array({slip}), timeline({first, first, first, second})).front();
  EXPECT_LT(miss.find("message is \"second\""), miss.find("message is \"first\"")) << miss;
}

TEST(ExpectationsTest, SayWhichEntriesTheyAreMetBy) {
  using Entries = std::vector<std::size_t>;
  const std::vector<Json> entries = timeline({first, event, second, second});
  const auto judgements = sim::judge({event,
                                      {{"unordered", {second, {{"kind", "log"}}}}},
                                      {{"count", 3}, {"of", {{"kind", "log"}}}},
                                      {{"absent", {{"kind", "event"}}}},
                                      {{"absent", {{"kind", "problem"}}}},
                                      first},
                                     entries);
  ASSERT_EQ(judgements.size(), 6U);
  EXPECT_EQ(judgements[0].entries, Entries{1});
  EXPECT_EQ(judgements[1].entries, (Entries{2, 3}));
  EXPECT_EQ(judgements[2].entries, (Entries{0, 2, 3}));
  EXPECT_EQ(judgements[3].entries, Entries{1});
  EXPECT_NE(judgements[3].miss, "");
  EXPECT_EQ(judgements[4].entries, Entries());
  EXPECT_EQ(judgements[4].miss, "");
  ASSERT_FALSE(judgements[5].entries.empty());
  EXPECT_EQ(judgements[5].entries.front(), 0U);
  EXPECT_NE(judgements[5].miss, "");
}

TEST(ExpectationsTest, ThatMatchNothingComeWithEntriesOfTheSameKeysLaterOnesFirst) {
  const Json list = {{"data", {{"list", {1}}}}};
  EXPECT_EQ(sim::unmetExpectations(Json::array({list}), timeline({first, event, second})).front(),
            R"(expectation 0 is not met: {"data":{"list":[1]}}
  nearest entries:
    {"t":0.0,"thread":"main","kind":"event","data":{"club":"gold","list":[1,{"a":1}]}}
      data.list is [1,{"a":1}]; expected: [1])");
  EXPECT_EQ(
      sim::unmetExpectations({first, {{"message", "third"}}}, timeline({first, second})).back(),
      R"(expectation 1 is not met: {"message":"third"}
  nearest entries:
    {"t":0.0,"thread":"main","kind":"log","message":"second"}
      message is "second"; expected: "third"
    {"t":0.0,"thread":"main","kind":"log","message":"first"}
      message is "first"; expected: "third")");
}

TEST(ExpectationsTest, ThatAreNotMetDoNotHideTheNext) {
  const auto unmet = sim::unmetExpectations({{{"code", "none"}}, first, {{"absent", event}}},
                                            timeline({first, event}));
  ASSERT_EQ(unmet.size(), 2U);
  EXPECT_EQ(unmet.front(), "expectation 0 is not met: {\"code\":\"none\"}\n  no entry is like it");
  EXPECT_TRUE(unmet.back().starts_with("expectation 2 is not met: {\"absent\":"));
  EXPECT_NE(unmet.back().find("this entry is there:"), std::string::npos);
}

TEST(ExpectationsTest, SayWhenAnEntryComesTooEarly) {
  const auto unmet = sim::unmetExpectations({second, first}, timeline({first, second}));
  ASSERT_EQ(unmet.size(), 1U);
  EXPECT_NE(unmet.front().find("comes before"), std::string::npos);
}

// What is said of the one expectation that is not met.
std::string missOf(const Json& expectation) {
  const auto unmet = sim::unmetExpectations(Json::array({expectation}), timeline({first, event}));
  return unmet.size() == 1 ? unmet.front() : "";
}

TEST(ExpectationsTest, MatchTextsByAPart) {
  EXPECT_TRUE(areMet({{{"kind", "log"}, {"message", {{"contains", "econ"}}}}}));
  EXPECT_FALSE(areMet({{{"kind", "log"}, {"message", {{"contains", "third"}}}}}));
  EXPECT_TRUE(areMet({{{"data", {{"club", {{"contains", "old"}}}}}}}));
  EXPECT_FALSE(areMet({{{"data", {{"list", {{"contains", "1"}}}}}}}));
}

TEST(ExpectationsTest, MatchListsByOneElement) {
  const Json report = {{"kind", "report"},
                       {"rows",
                        {{{"class", "A"}, {"remarks", {"one", "two"}}},
                         {{"class", "B"}, {"remarks", Json::array()}}}}};
  const auto isMet = [&](const Json& row) {
    const Json expected = {{"kind", "report"}, {"rows", {{"contains", row}}}};
    return sim::unmetExpectations(Json::array({expected}), timeline({report})).empty();
  };
  EXPECT_TRUE(isMet({{"class", "B"}}));
  EXPECT_TRUE(isMet({{"class", "A"}, {"remarks", {{"contains", "two"}}}}));
  EXPECT_TRUE(isMet({{"remarks", {{"contains", {{"contains", "w"}}}}}}));
  EXPECT_FALSE(isMet({{"class", "A"}, {"remarks", {{"contains", "three"}}}}));
  EXPECT_FALSE(isMet({{"class", "B"}, {"remarks", {{"contains", "one"}}}}));
  EXPECT_FALSE(isMet({{"class", "C"}}));
}

TEST(ExpectationsTest, MatchInAnyOrderWhereTheySaySo) {
  const Json anyLog = {{"kind", "log"}};
  EXPECT_TRUE(areMet({{{"unordered", {second, event, first}}}}));
  EXPECT_TRUE(areMet({{{"unordered", {anyLog, first}}}}));
  EXPECT_FALSE(areMet({{{"unordered", {anyLog, anyLog, anyLog}}}}));
  EXPECT_FALSE(areMet({event, {{"unordered", {first}}}}));
  EXPECT_FALSE(areMet({{{"unordered", {second, event}}}, second}));
  EXPECT_TRUE(areMet({{{"unordered", Json::array()}}, first}));
}

TEST(ExpectationsTest, CountEntries) {
  const auto count = [](int number, const Json& of) { return Json{{"count", number}, {"of", of}}; };
  EXPECT_TRUE(areMet({count(2, {{"kind", "log"}}), count(0, {{"kind", "file"}})}));
  EXPECT_FALSE(areMet(Json::array({count(1, {{"kind", "log"}})})));
  EXPECT_TRUE(areMet({second, count(1, event)}));
}

TEST(ExpectationsTest, OfTooFewEntriesComeWithTheNearestOnesThatDoNotMatch) {
  const auto unmet = sim::unmetExpectations(Json::array({{{"count", 2}, {"of", first}}}),
                                            timeline({first, event, second}));
  ASSERT_EQ(unmet.size(), 1U);
  EXPECT_EQ(unmet.front(),
            R"(expectation 0 is not met: {"count":2,"of":{"kind":"log","message":"first"}}
  the entries that match are 1
  nearest other entries:
    {"t":0.0,"thread":"main","kind":"log","message":"second"}
      message is "second"; expected: "first")");
}

TEST(ExpectationsTest, SayWhatDiffersInTheNearestEntries) {
  const std::string miss = missOf({{"kind", "event"}, {"data", {{"club", "tin"}, {"node", 1}}}});
  EXPECT_NE(miss.find("\n      data.club is \"gold\"; expected: \"tin\""), std::string::npos)
      << miss;
  EXPECT_NE(miss.find("\n      data.node is not there; expected: 1"), std::string::npos) << miss;
  EXPECT_NE(missOf({{"count", 3}, {"of", first}}).find("the entries that match are 1"),
            std::string::npos);
}

}  // namespace
