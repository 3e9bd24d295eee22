#include "Simulator/Network/URLSession.h"

#include <mutex>
#include <span>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Foundation/Setting.h"
#include "Simulator/Json/Values.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "Simulator/ObjectiveC/StandIn.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim::urlsession {
namespace {

using zib::BlockLayout;
using zib::Class;
using zib::classNamed;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::id;
using zib::objc::Integer;
using zib::objc::SEL;
using zib::objc::UInteger;
using CompletionHandler = zib::Block<void(id, id, id)>;

constexpr const char* sessionThread = "session";
constexpr const char* sessionClass = "NSURLSession";
constexpr const char* taskClass = "NSURLSessionTask";
constexpr const char* dataTaskClass = "NSURLSessionDataTask";

Setting<std::weak_ptr<Network>>& networkSetting() {
  static Setting<std::weak_ptr<Network>> network({});
  return network;
}

std::span<const std::uint8_t> bytesOfText(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string textOfData(id data) {
  const auto bytes = zib::bytesOf(data);
  return {bytes.begin(), bytes.end()};
}

// What an NSURLRequest asks for.
struct Order {
  HTTPRequest request;
  double timeout = 0;  // seconds
  UInteger cachePolicy = 0;
  bool hasBody = false;

  static Order from(id request);
  void record() const;
};

Order Order::from(id request) {
  Order order;
  order.request.url =
      zib::utf8From(send<id>(send<id>(request, selector<"URL">()), selector<"absoluteString">()));
  order.request.method = zib::utf8From(send<id>(request, selector<"HTTPMethod">()));
  // By name, so that they are in the same order in each run.
  const Json headers = jsonFromObject(send<id>(request, selector<"allHTTPHeaderFields">()));
  for (const auto& [name, value] : headers.items()) {
    order.request.headers.push_back({name, value.get<std::string>()});
  }
  if (const id body = send<id>(request, selector<"HTTPBody">())) {
    order.request.body = textOfData(body);
  }
  order.timeout = send<double>(request, selector<"timeoutInterval">());
  order.cachePolicy = send<UInteger>(request, selector<"cachePolicy">());
  order.hasBody = order.request.body || send<id>(request, selector<"HTTPBodyStream">()) != nullptr;
  return order;
}

void Order::record() const {
  Json headers = Json::object();
  for (const HTTPHeader& header : request.headers) headers[header.name] = header.value;
  Timeline::shared().add("http", {{"method", request.method},
                                  {"url", request.url},
                                  {"headers", headers},
                                  {"timeout", timeout},
                                  {"cachePolicy", cachePolicy},
                                  {"hasBody", hasBody}});
}

Object makeResponse(const HTTPResponse& response) {
  zib::ValueMap headers;
  for (const HTTPHeader& header : response.headers) headers.set(header.name, header.value);
  const id url = zib::sendToClass<"NSURL", "URLWithString:">(zib::makeString(response.url).raw());
  return zib::create<"NSHTTPURLResponse", "initWithURL:statusCode:HTTPVersion:headerFields:">(
      url, static_cast<Integer>(response.status), zib::makeString("HTTP/1.1").raw(),
      zib::objectFrom(headers).raw());
}

// One task, from its making to its completion, which it gives once.
class Exchange : public std::enable_shared_from_this<Exchange> {
 public:
  Exchange(Order order, BlockLayout* completion)
      : order_(std::move(order)), completion_(CompletionHandler::copied(completion)) {}

  void resume();
  void cancel();

 private:
  enum class State { suspended, running, over };

  // With the lock held.
  void endAt(Nanoseconds due, void (Exchange::*end)());
  // False when something else has ended it.
  bool begins(State next);
  void transfer();
  void timeOut() { finish({{}, {}, URLError::timedOut}); }
  void giveCancelled() { deliver({{}, {}, URLError::cancelled}); }
  void finish(const HTTPOutcome& outcome);
  void deliver(const HTTPOutcome& outcome);

  const Order order_;
  CompletionHandler completion_;
  std::mutex mutex_;
  State state_ = State::suspended;
  Nanoseconds timeOutTime_ = 0;
  std::uint64_t pending_ = 0;
};

void Exchange::endAt(Nanoseconds due, void (Exchange::*end)()) {
  pending_ = Scheduler::shared().submitSlow(
      sessionThread, [self = shared_from_this(), end] { ((*self).*end)(); }, due);
}

void Exchange::resume() {
  const std::lock_guard lock(mutex_);
  if (state_ != State::suspended) return;
  state_ = State::running;
  order_.record();
  const Nanoseconds now = Scheduler::shared().now();
  timeOutTime_ = now + inNanoseconds(order_.timeout);
  endAt(now, &Exchange::transfer);
}

void Exchange::cancel() {
  const std::lock_guard lock(mutex_);
  if (state_ == State::over) return;
  if (state_ == State::running) Scheduler::shared().withdraw(pending_);
  state_ = State::over;
  endAt(Scheduler::shared().now(), &Exchange::giveCancelled);
}

void Exchange::transfer() {
  const std::shared_ptr<Network> network = networkSetting().get().lock();
  const HTTPOutcome outcome = network ? network->exchange(order_.request)
                                      : HTTPOutcome{{}, {}, URLError::notConnectedToInternet};
  if (outcome.error != URLError::timedOut) {
    finish(outcome);
    return;
  }
  const std::lock_guard lock(mutex_);
  if (state_ == State::running) endAt(timeOutTime_, &Exchange::timeOut);
}

void Exchange::finish(const HTTPOutcome& outcome) {
  {
    const std::lock_guard lock(mutex_);
    if (state_ != State::running) return;
    state_ = State::over;
  }
  deliver(outcome);
}

// The handler is let go with its call, as whatever it holds may hold the task.
void Exchange::deliver(const HTTPOutcome& outcome) {
  const CompletionHandler completion =
      std::exchange(completion_, CompletionHandler::copied(nullptr));
  const Object body = outcome.error ? Object() : zib::makeData(bytesOfText(outcome.body));
  const Object response = outcome.response ? makeResponse(*outcome.response) : Object();
  const Object error = outcome.error ? errorFrom(*outcome.error).nativeError() : Object();
  completion(body.raw(), response.raw(), error.raw());
}

// A task is an object that holds a reference to its exchange.
using Held = std::shared_ptr<Exchange>;
constexpr const char* exchangeVariable = "exchange";

Held* heldBy(id task) { return static_cast<Held*>(pointerVariable(task, exchangeVariable)); }

void resume(id task, SEL) { (*heldBy(task))->resume(); }
void cancel(id task, SEL) { (*heldBy(task))->cancel(); }

void dealloc(id task, SEL command) {
  const std::unique_ptr<Held> held(heldBy(task));
  deallocInherited(task, command);
}

id dataTaskWithRequest(id, SEL, id request, BlockLayout* completion) {
  auto held = std::make_unique<Held>(std::make_shared<Exchange>(Order::from(request), completion));
  const Object task = zib::create(Class::named(dataTaskClass));
  object_setInstanceVariable(task.raw(), exchangeVariable, held.release());
  return autoreleased(task);
}

id dataTaskWithURL(id session, SEL, id url, BlockLayout* completion) {
  const Object request = zib::create<"NSURLRequest", "initWithURL:">(url);
  return dataTaskWithRequest(session, nullptr, request.raw(), completion);
}

id sharedSession(id, SEL) {
  static const Object session = makeStandIn(classNamed<"NSURLSession">());
  return session.raw();
}

void registerTask() {
  objc_class* const raw =
      zib::objc::allocateClassPair(classNamed<"NSObject">().raw(), taskClass, 0);
  addPointerVariable(raw, exchangeVariable, "^v");
  zib::objc::registerClassPair(raw);
  const Class task(raw);
  installMethod(task, "resume", &resume);
  installMethod(task, "cancel", &cancel);
  installMethod(task, "dealloc", &dealloc);
  zib::objc::registerClassPair(zib::objc::allocateClassPair(raw, dataTaskClass, 0));
}

void registerSession() {
  const Class session = registerStandIn(sessionClass, classNamed<"NSObject">(), {});
  installClassMethod(session, "sharedSession", &sharedSession);
  installMethod(session, "dataTaskWithRequest:completionHandler:", &dataTaskWithRequest);
  installMethod(session, "dataTaskWithURL:completionHandler:", &dataTaskWithURL);
}

}  // namespace

std::vector<std::string_view> classNames() { return {sessionClass, taskClass, dataTaskClass}; }

void install() {
  registerTask();
  registerSession();
}

void setNetwork(const std::shared_ptr<Network>& network) { networkSetting().set(network); }

}  // namespace sim::urlsession
