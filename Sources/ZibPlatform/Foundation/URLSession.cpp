#include "ZibPlatform/Foundation/URLSession.h"

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

std::optional<long> httpStatusOf(objc::id response) {
  if (!isKind<"NSHTTPURLResponse">(response)) return std::nullopt;
  return send<objc::Integer>(response, selector<"statusCode">());
}

Object makeRequest(const URLRequest& request) {
  Object result = create<"NSMutableURLRequest", "initWithURL:">(request.url.native());
  send<void>(result.raw(), selector<"setHTTPMethod:">(), makeString(request.method).raw());
  for (const RequestField& field : request.fields) {
    send<void>(result.raw(), selector<"setValue:forHTTPHeaderField:">(),
               makeString(field.value).raw(), makeString(field.name).raw());
  }
  send<void>(result.raw(), selector<"setTimeoutInterval:">(), request.timeout);
  return result;
}

// `subject` is what the selector's first argument takes: a request or a URL.
bool startTask(Selector dataTask, objc::id subject, BlockLayout* completion) {
  const AutoreleasePool pool;
  const objc::id session = sendToClass<"NSURLSession", "sharedSession">();
  const objc::id task = send<objc::id>(session, dataTask, subject, completion);
  send<void>(task, selector<"resume">());
  return task != nullptr;
}

}  // namespace

URLReply URLSession::reply(objc::id body, objc::id response, objc::id error) {
  return {bytesOf(body), httpStatusOf(response),
          error == nullptr ? std::nullopt : std::optional(Error::fromNative(error))};
}

URLReply URLSession::notStarted() {
  return {{}, {}, Error{"ZibMessaging", 0, "The system started no exchange", {}}};
}

bool URLSession::start(const URLRequest& request, const Completion& completion) {
  return startTask(selector<"dataTaskWithRequest:completionHandler:">(), makeRequest(request).raw(),
                   completion.raw());
}

bool URLSession::start(const URL& url, const Completion& completion) {
  return startTask(selector<"dataTaskWithURL:completionHandler:">(), url.native(),
                   completion.raw());
}

}  // namespace zib
