#include "ZibPlatform/Foundation/URLSession.h"

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

using CompletionBlock = Block<void(objc::id, objc::id, objc::id)>;

std::optional<long> httpStatusOf(objc::id response) {
  if (!isKind<"NSHTTPURLResponse">(response)) return std::nullopt;
  return send<objc::Integer>(response, selector<"statusCode">());
}

CompletionBlock completionBlock(const URLSession::Handler& handler) {
  return CompletionBlock::from([handler](objc::id body, objc::id response, objc::id error) {
    // The session's thread is not ours, and what the handler makes must not pile up on it.
    const AutoreleasePool pool;
    handler({bytesOf(body), httpStatusOf(response),
             error == nullptr ? std::nullopt : std::optional(Error::fromNative(error))});
  });
}

Object makeRequest(const URLRequest& request) {
  Object result = create<"NSMutableURLRequest", "initWithURL:">(request.url.native());
  send<void>(result.raw(), selector<"setHTTPMethod:">(), makeString(request.method).raw());
  for (const HTTPHeader& header : request.headers) {
    send<void>(result.raw(), selector<"setValue:forHTTPHeaderField:">(),
               makeString(header.value).raw(), makeString(header.name).raw());
  }
  send<void>(result.raw(), selector<"setTimeoutInterval:">(), request.timeout);
  return result;
}

// `subject` is what the selector's first argument takes: a request or a URL.
void start(Selector dataTask, objc::id subject, const URLSession::Handler& handler) {
  const AutoreleasePool pool;
  const CompletionBlock block = completionBlock(handler);
  const objc::id session = sendToClass<"NSURLSession", "sharedSession">();
  const objc::id task = send<objc::id>(session, dataTask, subject, block.raw());
  if (task == nullptr) {
    handler({{}, {}, Error{"ZibMessaging", 0, "The system started no exchange", {}}});
    return;
  }
  send<void>(task, selector<"resume">());
}

}  // namespace

void URLSession::fetch(const URLRequest& request, const Handler& handler) {
  start(selector<"dataTaskWithRequest:completionHandler:">(), makeRequest(request).raw(), handler);
}

void URLSession::fetch(const URL& url, const Handler& handler) {
  start(selector<"dataTaskWithURL:completionHandler:">(), url.native(), handler);
}

}  // namespace zib
