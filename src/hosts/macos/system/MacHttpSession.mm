#include "hosts/macos/system/MacHttpSession.h"

#include "hosts/macos/system/CaptureTransport.h"
#include "hosts/macos/system/Conversions.h"

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
          [[::CaptureTransport alloc] initWithMaximumBodyBytes:configuration.maximumBodyBytes]),
      session_([NSURLSession sessionWithConfiguration:makeConfiguration(configuration)
                                             delegate:transport_
                                        delegateQueue:[NSOperationQueue mainQueue]]) {}

MacHttpSession::~MacHttpSession() {
  [transport_ forgetAll];
  [session_ invalidateAndCancel];
}

void MacHttpSession::send(const HttpRequest& request, Completion completion) {
  NSURL* url = toNSURL(request.url);
  if (url == nil) {
    const std::function<void()> fail = lifetime_.guard(
        [completion = std::move(completion)] { completion(Unexpected(unsupportedUrl())); });
    dispatch_async(dispatch_get_main_queue(), ^{
      fail();
    });
    return;
  }
  NSURLSessionTask* task = [session_ dataTaskWithRequest:toNSURLRequest(request, url)];
  [transport_ expectTask:task completion:std::move(completion)];
  [task resume];
}

}  // namespace navora
