// What can go wrong with an exchange, over real sockets, for each of the two that a flow has.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>
#include <vector>

#include "Tests/Support/PushFlowTest.h"
#include "Tests/Support/RowName.h"

namespace {

using sim::Fault;
using sim::Reply;
using test::answer;
using test::broken;
using test::redirect;
using test::Request;
using test::Story;

constexpr const char* otherHost = "other.example";

std::string goodDocument(Request request) {
  return request == Request::configuration ? test::configuration() : test::propertyList();
}

class ConfigurePushTransportTest : public test::PushFlowTest {
 protected:
  // What a request is redirected to.
  void serveElsewhere(Request request) {
    flow_.serve(otherHost, "/hang", broken(Fault::hang));
    flow_.serve(otherHost, "/reset", broken(Fault::reset));
    flow_.serve(otherHost, "/loop", redirect("/loop"));
    flow_.serve(otherHost, "/found", answer(goodDocument(request)));
  }
};

struct Failure {
  const char* name;
  Fault fault;
  // Of the good document that is under way when the fault strikes.
  enum class Body { none, good } body;
  // Where there is no fault; empty for an answer from nowhere.
  std::string redirectTo;
  int code;
};

class FailedExchangeTest : public ConfigurePushTransportTest,
                           public testing::WithParamInterface<Failure> {
 protected:
  static constexpr int timedOut = -1001;

  Story storyOfFailed(Request request) {
    const Failure& failure = GetParam();
    serveElsewhere(request);
    if (failure.fault != Fault::none) {
      flow_.serve(request,
                  broken(failure.fault, failure.body == Failure::Body::good ? goodDocument(request)
                                                                            : std::string()));
    } else if (!failure.redirectTo.empty()) {
      flow_.serve(request, redirect(failure.redirectTo));
    } else {
      flow_.unlist(request);
    }
    return flow_.run();
  }
  static std::string error() { return "NSURLErrorDomain " + std::to_string(GetParam().code); }
};

TEST_P(FailedExchangeTest, EndsTheFlow) {
  const bool hangs = GetParam().code == timedOut;
  EXPECT_EQ(storyOfFailed(Request::propertyList),
            test::story::notDownloaded(error(), hangs ? 60 : 0));
  expectNothingHandedOver();
  EXPECT_EQ(storyOfFailed(Request::configuration),
            test::story::notFetched(error(), hangs ? 30 : 0));
  expectNothingHandedOver();
}

constexpr auto none = Failure::Body::none;
constexpr auto good = Failure::Body::good;

INSTANTIATE_TEST_SUITE_P(
    All, FailedExchangeTest,
    testing::Values(
        Failure{"Offline", Fault::none, none, "", -1009},
        Failure{"UnknownHost", Fault::unknownHost, none, "", -1003},
        Failure{"Refused", Fault::refuse, none, "", -1004},
        Failure{"ResetBeforeTheAnswer", Fault::reset, none, "", -1005},
        Failure{"ResetAmidTheBody", Fault::reset, good, "", -1005},
        Failure{"HangBeforeTheAnswer", Fault::hang, none, "", -1001},
        Failure{"HangAmidTheBody", Fault::hang, good, "", -1001},
        Failure{"TruncatedToNothing", Fault::truncate, none, "", -1005},
        Failure{"TruncatedToAHalf", Fault::truncate, good, "", -1005},
        Failure{"WithoutTLS", Fault::tls, none, "", -1200},
        Failure{"RedirectLoop", Fault::none, none, "https://other.example/loop", -1007},
        Failure{"RedirectToAnUnlistedHost", Fault::none, none, "//far.example/", -1009},
        Failure{"RedirectToAnotherScheme", Fault::none, none, "app://other.example/", -1002},
        Failure{"RedirectToAReset", Fault::none, none, "https://other.example/reset", -1005},
        Failure{"RedirectToAHang", Fault::none, none, "http://other.example/hang", -1001}),
    test::rowName);

// By its status.
class RedirectTest : public ConfigurePushTransportTest, public testing::WithParamInterface<int> {};

TEST_P(RedirectTest, IsFollowedForEachRequest) {
  for (const Request request : {Request::configuration, Request::propertyList}) {
    const bool isFirst = request == Request::configuration;
    const char* host = isFirst ? test::configurationHost : test::propertyListHost;
    serveElsewhere(request);
    flow_.serve(host, "/moved?to=a%20b", redirect("../found#part", GetParam()));
    flow_.serve(host, "/found", answer(goodDocument(request)));
    for (const char* location :
         {"found", "/found", "./a/../found", "moved?to=a%20b", "https://other.example/found",
          "HTTP://Other.example:8080/found", "//other.example/found"}) {
      SCOPED_TRACE(location);
      flow_.serve(request, redirect(location, GetParam()));
      EXPECT_EQ(flow_.run(), test::story::registered());
      expectPropertyListHandedOver();
    }
    flow_.serve(request, answer(goodDocument(request)));
  }
}

INSTANTIATE_TEST_SUITE_P(All, RedirectTest, testing::Values(301, 302, 303, 307, 308),
                         test::rowName);

TEST_F(ConfigurePushTransportTest, AConfigurationOfAnyStatusBut200IsNone) {
  for (const int status :
       {201, 202, 203, 204, 206, 300, 301, 302, 303, 304, 307, 308, 400, 401, 404, 500, 503}) {
    SCOPED_TRACE(status);
    flow_.serve(Request::configuration, answer(test::configuration(), status));
    EXPECT_EQ(flow_.run(), test::story::disabled());
    flow_.serve(Request::configuration, answer("not json", status));
    EXPECT_EQ(flow_.run(), test::story::disabled());
    expectNothingHandedOver();
  }
}

TEST_F(ConfigurePushTransportTest, AConfigurationWithoutABodyIsNone) {
  for (const int status : {200, 204, 404}) {
    flow_.serve(Request::configuration, answer("", status));
    EXPECT_EQ(flow_.run(), test::story::disabled()) << status;
    expectNothingHandedOver();
  }
}

// No status and no header makes more or less of the documents than they are.
TEST_F(ConfigurePushTransportTest, HeadersOfTheAnswersChangeNothing) {
  const std::vector<sim::HTTPHeader> headers{{"Content-Type", "text/html; charset=utf-16"},
                                             {"Set-Cookie", "a=b"},
                                             {"Location", "https://other.example/hang"},
                                             {"X-Empty", ""},
                                             {"X-Twice", "1"},
                                             {"X-Twice", "2"},
                                             {"X-No-UTF-8", "\xFF\xC3"},
                                             {"X-Long", std::string(50'000, 'x')}};
  for (const Request request : {Request::configuration, Request::propertyList}) {
    flow_.serve(request, {200, headers, goodDocument(request), Fault::none});
  }
  EXPECT_EQ(flow_.run(), test::story::registered());
  expectPropertyListHandedOver();
}

TEST_F(ConfigurePushTransportTest, ARedirectThatLeadsNowhereEndsTheFlow) {
  for (const char* location :
       {"http:", "https:///found", "///found", "//[::1", "//other.example:99999/found",
        "file:///etc/passwd", "ftp://other.example/found"}) {
    SCOPED_TRACE(location);
    flow_.serve(Request::configuration, redirect(location));
    EXPECT_EQ(flow_.run(), test::story::notFetched("NSURLErrorDomain -1002"));
    expectNothingHandedOver();
  }
}

// Each flow with its configuration at a URL of its own.
struct ParallelFlow {
  Reply configuration;
  bool isRegistering;
};

std::string configurationOf(const std::string& propertyListTarget) {
  return test::configuration("true", "\"https://files.example" + propertyListTarget + "\"");
}

TEST_F(ConfigurePushTransportTest, FlowsInParallelEachEndOnceAsTheyWouldAlone) {
  flow_.serve(test::propertyListHost, "/none", answer(""));
  flow_.serve(test::propertyListHost, "/list", answer("(a)"));
  flow_.serve(test::propertyListHost, "/slow", broken(Fault::hang));
  const std::vector<ParallelFlow> flows{{answer(test::configuration()), true},
                                        {answer(test::configuration("false")), false},
                                        {answer("not json"), false},
                                        {broken(Fault::hang), false},
                                        {broken(Fault::reset, test::configuration()), false},
                                        {answer(configurationOf("/none")), false},
                                        {answer(configurationOf("/list")), false},
                                        {answer(configurationOf("/slow")), false},
                                        {redirect(test::configurationURL), true},
                                        {answer(test::configuration(), 500), false}};
  const auto urlOf = [](std::size_t flow) {
    return "https://config.example/" + std::to_string(flow);
  };
  for (std::size_t flow = 0; flow < flows.size(); ++flow) {
    flow_.serve(test::configurationHost, "/" + std::to_string(flow), flows[flow].configuration);
  }
  flow_.connect();
  constexpr int rounds = 4;
  std::vector<std::thread> callers;
  for (std::size_t flow = 0; flow < flows.size(); ++flow) {
    callers.emplace_back([&, flow] {
      const zib::AutoreleasePool pool;
      for (int round = 0; round < rounds; ++round) flow_.start(urlOf(flow));
    });
  }
  for (std::thread& caller : callers) caller.join();
  test::Device::drain();

  std::map<std::string, std::vector<sim::Json>> completions;
  for (const sim::Json& entry : flow_.device().entries("completion")) {
    completions[entry.at("of")].push_back(entry);
  }
  std::size_t handled = 0;
  for (std::size_t flow = 0; flow < flows.size(); ++flow) {
    SCOPED_TRACE(flow);
    EXPECT_EQ(completions[urlOf(flow)].size(), std::size_t{rounds});
    for (const sim::Json& entry : completions[urlOf(flow)]) {
      EXPECT_EQ(entry.at("value"), flows[flow].isRegistering);
      EXPECT_EQ(entry.at("thread"), flows[flow].isRegistering ? "main" : "session");
    }
    if (flows[flow].isRegistering) handled += rounds;
  }
  EXPECT_EQ(flow_.handled(), std::vector(handled, test::propertyListValues()));
  EXPECT_EQ(flow_.stored(), test::propertyList());
}

}  // namespace
