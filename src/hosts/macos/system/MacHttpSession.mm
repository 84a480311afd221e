#include "hosts/macos/system/MacHttpSession.h"

#include <map>
#include <utility>

#include "hosts/macos/system/Conversions.h"

NS_ASSUME_NONNULL_BEGIN

// The session's delegate. Refuses redirects, collects response bodies and cancels a response whose
// body exceeds the limit. Main thread only.
@interface CaptureTransport : NSObject <NSURLSessionDataDelegate>
- (instancetype)initWithMaximumBodyBytes:(std::size_t)maximumBodyBytes;
// `completion` is called once, unless `forgetAll` is called first.
- (void)expectTask:(NSURLSessionTask*)task completion:(navora::HttpSession::Completion)completion;
// Does nothing for a task that has ended.
- (void)cancelTask:(NSUInteger)taskIdentifier;
- (void)forgetAll;
@end

NS_ASSUME_NONNULL_END

namespace {

// A response being received.
struct Transfer {
  NSURLSessionTask* _Nonnull task;
  navora::HttpSession::Completion completion;
  std::string body = {};
  bool bodyTooLarge = false;
};

navora::HttpResponse toHttpResponse(NSURLResponse* _Nullable response, Transfer transfer) {
  navora::HttpResponse result;
  result.body = std::move(transfer.body);
  result.bodyTooLarge = transfer.bodyTooLarge;
  if ([response isKindOfClass:[NSHTTPURLResponse class]]) {
    result.status = static_cast<int>(((NSHTTPURLResponse*)response).statusCode);
    result.url = navora::toUrl(response.URL);
  }
  return result;
}

}  // namespace

@implementation CaptureTransport {
  std::size_t _maximumBodyBytes;
  std::map<NSUInteger, Transfer> _transfers;
}

- (instancetype)initWithMaximumBodyBytes:(std::size_t)maximumBodyBytes {
  self = [super init];
  if (self != nil) _maximumBodyBytes = maximumBodyBytes;
  return self;
}

- (void)expectTask:(NSURLSessionTask*)task completion:(navora::HttpSession::Completion)completion {
  _transfers.emplace(task.taskIdentifier,
                     Transfer{.task = task, .completion = std::move(completion)});
}

- (void)cancelTask:(NSUInteger)taskIdentifier {
  const auto node = _transfers.extract(taskIdentifier);
  if (!node.empty()) [node.mapped().task cancel];
}

- (void)forgetAll {
  _transfers.clear();
}

- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest* _Nullable))completionHandler {
  completionHandler(nil);
}

- (void)URLSession:(NSURLSession*)session
          dataTask:(NSURLSessionDataTask*)dataTask
    didReceiveData:(NSData*)data {
  const auto found = _transfers.find(dataTask.taskIdentifier);
  if (found == _transfers.end() || found->second.bodyTooLarge) return;
  Transfer& transfer = found->second;
  if (data.length > _maximumBodyBytes - transfer.body.size()) {
    transfer.bodyTooLarge = true;
    transfer.body.clear();
    [dataTask cancel];
    return;
  }
  transfer.body.append(static_cast<const char*>(data.bytes), data.length);
}

// Also called after `-cancel`, with an error.
- (void)URLSession:(NSURLSession*)session
                    task:(NSURLSessionTask*)task
    didCompleteWithError:(nullable NSError*)error {
  auto node = _transfers.extract(task.taskIdentifier);
  if (node.empty()) return;
  Transfer transfer = std::move(node.mapped());
  // The completion may destroy the session, and with it this object.
  const navora::HttpSession::Completion completion = std::move(transfer.completion);
  if (error != nil && !transfer.bodyTooLarge) {
    completion(navora::Unexpected(navora::toPlatformError(error)));
  } else {
    completion(toHttpResponse(task.response, std::move(transfer)));
  }
}

@end

namespace navora {

namespace {

NSURLSessionConfiguration* makeConfiguration(const HttpSessionConfiguration& description) {
  NSURLSessionConfiguration* configuration =
      [NSURLSessionConfiguration ephemeralSessionConfiguration];
  configuration.HTTPCookieStorage = nil;
  configuration.HTTPShouldSetCookies = NO;
  configuration.URLCache = nil;
  configuration.requestCachePolicy = NSURLRequestReloadIgnoringLocalCacheData;
  configuration.timeoutIntervalForRequest = description.requestTimeoutSeconds;
  configuration.timeoutIntervalForResource = description.resourceTimeoutSeconds;
  return configuration;
}

NSURLRequest* toNSURLRequest(const HttpRequest& request, NSURL* url) {
  NSMutableURLRequest* result =
      [NSMutableURLRequest requestWithURL:url
                              cachePolicy:NSURLRequestUseProtocolCachePolicy
                          timeoutInterval:request.timeoutSeconds];
  for (const auto& [name, value] : request.headers) {
    [result setValue:toNSString(value) forHTTPHeaderField:toNSString(name)];
  }
  result.HTTPMethod = toNSString(request.method);
  if (!request.body.empty()) {
    result.HTTPBody = [NSData dataWithBytes:request.body.data() length:request.body.size()];
  }
  return result;
}

PlatformError unsupportedUrl() {
  return toPlatformError([NSError errorWithDomain:NSURLErrorDomain
                                             code:NSURLErrorUnsupportedURL
                                         userInfo:nil]);
}

}  // namespace

MacHttpSession::MacHttpSession(const HttpSessionConfiguration& configuration)
    : transport_(
          [[CaptureTransport alloc] initWithMaximumBodyBytes:configuration.maximumBodyBytes]),
      session_([NSURLSession sessionWithConfiguration:makeConfiguration(configuration)
                                             delegate:transport_
                                        delegateQueue:[NSOperationQueue mainQueue]]) {}

MacHttpSession::~MacHttpSession() {
  [transport_ forgetAll];
  [session_ invalidateAndCancel];
}

HttpSession::RequestId MacHttpSession::send(const HttpRequest& request, Completion completion) {
  NSURL* url = toNSURL(request.url);
  if (url == nil) return failLater(std::move(completion));
  NSURLSessionTask* task = [session_ dataTaskWithRequest:toNSURLRequest(request, url)];
  [transport_ expectTask:task completion:std::move(completion)];
  [task resume];
  return task.taskIdentifier;
}

HttpSession::RequestId MacHttpSession::failLater(Completion completion) {
  const RequestId id = --lastFailing_;
  failing_.emplace(id, std::move(completion));
  const std::function<void()> fail = lifetime_.guard([this, id] {
    const auto node = failing_.extract(id);
    if (!node.empty()) node.mapped()(Unexpected(unsupportedUrl()));
  });
  dispatch_async(dispatch_get_main_queue(), ^{
    fail();
  });
  return id;
}

void MacHttpSession::cancel(RequestId request) {
  failing_.erase(request);
  [transport_ cancelTask:static_cast<NSUInteger>(request)];
}

}  // namespace navora
