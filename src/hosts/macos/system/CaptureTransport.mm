#include "hosts/macos/system/CaptureTransport.h"

#include <map>
#include <utility>

#include "hosts/macos/system/Conversions.h"

namespace {

// An answer on its way.
struct Transfer {
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
  _transfers[task.taskIdentifier] = Transfer{.completion = std::move(completion)};
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

// Also after a cancellation of our own.
- (void)URLSession:(NSURLSession*)session
                    task:(NSURLSessionTask*)task
    didCompleteWithError:(nullable NSError*)error {
  auto node = _transfers.extract(task.taskIdentifier);
  if (node.empty()) return;
  Transfer transfer = std::move(node.mapped());
  // The completion may end the session.
  const navora::HttpSession::Completion completion = std::move(transfer.completion);
  if (error != nil && !transfer.bodyTooLarge) {
    completion(navora::Unexpected(navora::toPlatformError(error)));
  } else {
    completion(toHttpResponse(task.response, std::move(transfer)));
  }
}

@end
