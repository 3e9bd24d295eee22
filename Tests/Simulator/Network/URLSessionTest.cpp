#include "Simulator/Network/URLSession.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Timeline/Timeline.h"
#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URLSession.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using sim::Fault;
using sim::Json;
using sim::Nanoseconds;
using sim::Scheduler;
using zib::selector;
using zib::send;
using zib::objc::id;

constexpr Nanoseconds second = 1'000'000'000;

class URLSessionTest : public test::FoundationTest {
 protected:
  URLSessionTest() {
    sim::foundation::install();
    if (!zib::Class::named("NSURLSession")) sim::urlsession::install();
    sim::urlsession::setNetwork(network_);
    sim::Timeline::shared().setSink([this](const Json& entry) { entries_.push_back(entry); });
  }
  ~URLSessionTest() override { sim::Timeline::shared().setSink({}); }

  static zib::URL url(const std::string& path) {
    return zib::URL::parse("https://config.example" + path).value();
  }

  // Writes down when and where the answer came, and what it was.
  auto noting(const std::string& name) {
    return [this, name](const zib::URLReply& reply) {
      const std::string outcome = reply.error ? std::to_string(reply.error->code)
                                              : std::to_string(reply.httpStatus.value_or(0));
      note(name + " " + outcome + " " + std::string(reply.body.begin(), reply.body.end()));
    };
  }
  void note(const std::string& what) {
    notes_.push_back(std::to_string((Scheduler::shared().now() - start_) / second) + " " +
                     std::string(sim::currentThreadName()) + ": " + what);
  }

  using Notes = std::vector<std::string>;
  Nanoseconds start_ = Scheduler::shared().now();
  Notes notes_;
  std::vector<Json> entries_;
  std::shared_ptr<sim::Network> network_ =
      std::make_shared<sim::Network>(sim::Sites{{"config.example",
                                                 {{"/a", {200, {}, "A", Fault::none}},
                                                  {"/b", {404, {}, "B", Fault::none}},
                                                  {"/slow", {200, {}, "", Fault::hang}},
                                                  {"/cut", {200, {}, "", Fault::reset}}}}});
};

TEST_F(URLSessionTest, AnswersOnAThreadOfItsOwn) {
  zib::URLSession::fetch(url("/a"), noting("a"));
  EXPECT_EQ(notes_, Notes{});
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, Notes{"0 session: a 200 A"});
}

TEST_F(URLSessionTest, RecordsARequestWhenItStarts) {
  constexpr std::array<zib::RequestField, 1> fields{{{"Content-Type", "application/json"}}};
  zib::URLSession::fetch({url("/a"), "GET", fields, 30}, noting("a"));
  zib::URLSession::fetch(zib::URL::parse("http://far.example").value(), noting("far"));
  ASSERT_EQ(entries_.size(), 2U);
  for (Json& entry : entries_) entry.erase("t");
  EXPECT_EQ(entries_[0], Json({{"kind", "http"},
                               {"thread", "main"},
                               {"method", "GET"},
                               {"url", "https://config.example/a"},
                               {"headers", {{"Content-Type", "application/json"}}},
                               {"timeout", 30},
                               {"cachePolicy", 0},
                               {"hasBody", false}}));
  EXPECT_EQ(entries_[1], Json({{"kind", "http"},
                               {"thread", "main"},
                               {"method", "GET"},
                               {"url", "http://far.example"},
                               {"headers", Json::object()},
                               {"timeout", 60},
                               {"cachePolicy", 0},
                               {"hasBody", false}}));
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, (Notes{"0 session: a 200 A", "0 session: far -1009 "}));
}

TEST_F(URLSessionTest, AnswersInTheOrderOfTheRequestsAfterTheMainQueue) {
  zib::URLSession::fetch(url("/b"), noting("b"));
  zib::URLSession::fetch(url("/cut"), noting("cut"));
  zib::URLSession::fetch(url("/a"), noting("a"));
  Scheduler::shared().submitNow([this] {
    note("due");
    Scheduler::shared().submitNow([this] { note("due too"); });
  });
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, (Notes{"0 main: due", "0 main: due too", "0 session: b 404 B",
                           "0 session: cut -1005 ", "0 session: a 200 A"}));
}

TEST_F(URLSessionTest, RunsWhatAnAnswerSubmitsBeforeTheNextAnswer) {
  zib::URLSession::fetch(url("/a"), [this](const zib::URLReply&) {
    note("first");
    Scheduler::shared().submitNow([this] { note("submitted"); });
  });
  zib::URLSession::fetch(url("/a"), noting("second"));
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, (Notes{"0 session: first", "0 main: submitted", "0 session: second 200 A"}));
}

TEST_F(URLSessionTest, EndsAHangByItsOwnTimeOut) {
  zib::URLSession::fetch({url("/slow"), "GET", {}, 30}, noting("30"));
  zib::URLSession::fetch(url("/slow"), noting("60"));
  zib::URLSession::fetch({url("/slow"), "GET", {}, 2}, noting("2"));
  zib::URLSession::fetch(url("/a"), noting("a"));
  for (const int due : {1, 2, 29, 61}) {
    Scheduler::shared().submit([this] { note("due"); }, start_ + due * second);
  }
  Scheduler::shared().drain();
  EXPECT_EQ(notes_,
            (Notes{"0 session: a 200 A", "1 main: due", "2 main: due", "2 session: 2 -1001 ",
                   "29 main: due", "30 session: 30 -1001 ", "60 session: 60 -1001 "}));
  EXPECT_EQ(Scheduler::shared().now() - start_, 60 * second);
  Scheduler::shared().advanceTo(start_ + 61 * second);
  EXPECT_EQ(notes_.back(), "61 main: due");
}

TEST_F(URLSessionTest, IsOfflineWithoutANetwork) {
  network_.reset();
  zib::URLSession::fetch(url("/a"), noting("a"));
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, Notes{"0 session: a -1009 "});
}

TEST_F(URLSessionTest, HandsOverThePlatformsErrors) {
  std::optional<zib::Error> error;
  zib::URLSession::fetch(url("/cut"), [&](const zib::URLReply& reply) { error = reply.error; });
  Scheduler::shared().drain();
  ASSERT_TRUE(error);
  EXPECT_EQ(error->domain, "NSURLErrorDomain");
  EXPECT_EQ(error->description, "The network connection was lost.");
}

// Tasks in the hands of a host, through their selectors.
class URLSessionTaskTest : public URLSessionTest {
 protected:
  id makeTask(const std::string& path) {
    const auto completion =
        zib::Block<void(id, id, id)>::from([this](id body, id response, id error) {
          const long code = error != nullptr
                                ? send<zib::objc::Integer>(error, selector<"code">())
                                : send<zib::objc::Integer>(response, selector<"statusCode">());
          note(std::to_string(code) + (body == nullptr ? "" : " with a body"));
        });
    const id session =
        send<id>(zib::classNamed<"NSURLSession">().object(), selector<"sharedSession">());
    return send<id>(session, selector<"dataTaskWithURL:completionHandler:">(), url(path).native(),
                    completion.raw());
  }
  static void resume(id task) { send<void>(task, selector<"resume">()); }
  static void cancel(id task) { send<void>(task, selector<"cancel">()); }
};

TEST_F(URLSessionTaskTest, DoesNothingUntilItIsResumed) {
  makeTask("/a");
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, Notes{});
  EXPECT_TRUE(entries_.empty());
}

TEST_F(URLSessionTaskTest, CompletesOnceHoweverOftenItIsResumed) {
  const id task = makeTask("/a");
  resume(task);
  resume(task);
  Scheduler::shared().drain();
  resume(task);
  cancel(task);
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, Notes{"0 session: 200 with a body"});
  EXPECT_EQ(entries_.size(), 1U);
}

TEST_F(URLSessionTaskTest, IsCancelledBeforeTheAnswer) {
  const id task = makeTask("/a");
  resume(task);
  cancel(task);
  cancel(task);
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, Notes{"0 session: -999"});
}

TEST_F(URLSessionTaskTest, IsCancelledBeforeItIsResumed) {
  const id task = makeTask("/a");
  cancel(task);
  resume(task);
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, Notes{"0 session: -999"});
}

TEST_F(URLSessionTaskTest, IsCancelledDuringAHangWithoutWaitingFurther) {
  const id task = makeTask("/slow");
  resume(task);
  Scheduler::shared().submit([&] { cancel(task); }, start_ + 5 * second);
  Scheduler::shared().drain();
  EXPECT_EQ(notes_, Notes{"5 session: -999"});
  EXPECT_EQ(Scheduler::shared().now() - start_, 5 * second);
}

TEST_F(URLSessionTaskTest, HandsOverAnHTTPResponse) {
  const id session =
      send<id>(zib::classNamed<"NSURLSession">().object(), selector<"sharedSession">());
  std::string seen;
  const auto completion = zib::Block<void(id, id, id)>::from([&](id, id response, id) {
    seen = zib::Class::visibleClassOf(response).name();
    const id headers = send<id>(response, selector<"allHeaderFields">());
    seen += " " + zib::utf8From(send<id>(headers, selector<"objectForKey:">(),
                                         zib::makeString("Content-Length").raw()));
    seen += " " + zib::utf8From(send<id>(send<id>(response, selector<"URL">()),
                                         selector<"absoluteString">()));
  });
  resume(send<id>(session, selector<"dataTaskWithURL:completionHandler:">(), url("/b").native(),
                  completion.raw()));
  Scheduler::shared().drain();
  EXPECT_EQ(seen, "NSHTTPURLResponse 1 https://config.example/b");
}

}  // namespace
