// Sessions that load from servers on this machine, over plain sockets.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "frameworks/Foundation/MainLoop.h"
#include "frameworks/Foundation/OnceHandler.h"
#include "frameworks/Foundation/Strings.h"
#include "runtime/Runtime.h"
#include "tests/support/HttpMessage.h"
#include "tests/support/Tcp.h"
#include "tests/support/Wait.h"

using navora::doubles::stringFromUtf8;
using navora::doubles::utf8Of;

@implementation NSHTTPCookieStorage {
 @package
  std::vector<std::string> _cookies;
}
@end

@implementation NSURLCache {
 @package
  std::vector<std::string> _urls;
}
@end

@implementation NSURLSessionConfiguration

@synthesize HTTPCookieStorage = _HTTPCookieStorage, HTTPShouldSetCookies = _HTTPShouldSetCookies,
            URLCache = _URLCache, requestCachePolicy = _requestCachePolicy,
            timeoutIntervalForRequest = _timeoutIntervalForRequest,
            timeoutIntervalForResource = _timeoutIntervalForResource;

// Its cookies and its cache are in memory; 60 seconds and 7 days: documentation of the properties.
+ (NSURLSessionConfiguration*)ephemeralSessionConfiguration {
  NSURLSessionConfiguration* configuration = [[self alloc] init];
  configuration.HTTPCookieStorage = [[NSHTTPCookieStorage alloc] init];
  configuration.HTTPShouldSetCookies = YES;
  configuration.URLCache = [[NSURLCache alloc] init];
  configuration.timeoutIntervalForRequest = 60;
  configuration.timeoutIntervalForResource = 7 * 24 * 60 * 60.0;
  return configuration;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  NSURLSessionConfiguration* copy = [[NSURLSessionConfiguration alloc] init];
  copy.HTTPCookieStorage = _HTTPCookieStorage;
  copy.HTTPShouldSetCookies = _HTTPShouldSetCookies;
  copy.URLCache = _URLCache;
  copy.requestCachePolicy = _requestCachePolicy;
  copy.timeoutIntervalForRequest = _timeoutIntervalForRequest;
  copy.timeoutIntervalForResource = _timeoutIntervalForResource;
  return copy;
}

@end

@interface NSURLSessionTask ()
- (void)waitForThread;
@end

namespace {

using Clock = std::chrono::steady_clock;

Clock::duration seconds(double count) {
  return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(count));
}

// The host and what follows it in "http://127.0.0.1:PORT/target".
struct Address {
  int port = 0;
  std::string authority;
  std::string target;
};

std::optional<Address> addressOf(NSURL* url) {
  const std::string text = utf8Of(url.absoluteString);
  const std::string prefix = "http://127.0.0.1:";
  if (!text.starts_with(prefix)) return std::nullopt;
  const std::size_t end = std::min(text.find('/', prefix.size()), text.size());
  return Address{.port = std::stoi(text.substr(prefix.size(), end - prefix.size())),
                 .authority = text.substr(7, end - 7),
                 .target = end == text.size() ? "/" : text.substr(end)};
}

std::string requestBytes(NSURLRequest* request, const Address& address,
                         const std::string& cookies) {
  std::string bytes = utf8Of(request.HTTPMethod) + " " + address.target +
                      " HTTP/1.1\r\nHost: " + address.authority + "\r\nConnection: close\r\n";
  for (NSString* name in request.allHTTPHeaderFields) {
    bytes += utf8Of(name) + ": " + utf8Of(request.allHTTPHeaderFields[name]) + "\r\n";
  }
  if (!cookies.empty()) bytes += "Cookie: " + cookies + "\r\n";
  if (request.HTTPBody != nil) {
    bytes += "Content-Length: " + std::to_string(request.HTTPBody.length) + "\r\n";
  }
  bytes += "\r\n";
  if (request.HTTPBody != nil) {
    bytes.append(static_cast<const char*>(request.HTTPBody.bytes), request.HTTPBody.length);
  }
  return bytes;
}

// The reasons why a load fails, as codes of NSURLErrorDomain.
struct LoadFailure {
  NSInteger code;
};

navora::TcpConnection connect(const Address& address) {
  try {
    return navora::TcpConnection::connect(address.port);
  } catch (const navora::TestError&) {
    throw LoadFailure{NSURLErrorCannotConnectToHost};
  }
}

// The loads that have not ended, so that the end of a test can wait for their threads.
class Loads {
 public:
  static Loads& shared() {
    static auto& loads = *[] {
      // Before the blocks of the main queue are discarded, to which these threads add.
      (void)dispatch_get_main_queue();
      navora::objc::whenTestEnds([] { Loads::shared().end(); });
      return new Loads;
    }();
    return loads;
  }

  void add(NSURLSessionTask* task) {
    const std::lock_guard lock(mutex_);
    tasks_.insert(task);
  }
  void remove(NSURLSessionTask* task) {
    const std::lock_guard lock(mutex_);
    tasks_.erase(task);
  }

 private:
  void end() {
    std::set<NSURLSessionTask*> tasks;
    {
      const std::lock_guard lock(mutex_);
      tasks.swap(tasks_);
    }
    for (NSURLSessionTask* task : tasks) {
      [task cancel];
      [task waitForThread];
    }
    // The ends of the loads, without which their sessions would stay.
    while (!tasks.empty() && navora::doubles::MainLoop::turn()) {
    }
  }

  std::mutex mutex_;
  std::set<NSURLSessionTask*> tasks_;
};

}  // namespace

@interface NSURLSession ()
@property(nonatomic, readonly) NSURLSessionConfiguration* configuration;
- (void)tell:(void (^)(id<NSURLSessionDataDelegate> delegate))message;
- (void)taskHasEnded:(NSURLSessionTask*)task;
@end

@interface NSURLSessionDataTask ()
- (instancetype)initWithSession:(NSURLSession*)session
                        request:(NSURLRequest*)request
                     identifier:(NSUInteger)identifier;
@end

@implementation NSURLSessionTask {
 @package
  NSUInteger _taskIdentifier;
  NSURLResponse* _response;
  std::atomic<bool> _isCancelled;
  std::thread _thread;
}

@synthesize taskIdentifier = _taskIdentifier;

- (nullable NSURLResponse*)response {
  return _response;
}

- (void)resume {
}

- (void)cancel {
  _isCancelled = true;
}

- (void)waitForThread {
  if (_thread.joinable()) _thread.join();
}

// The thread itself may hold the last reference.
- (void)dealloc {
  if (_thread.get_id() == std::this_thread::get_id()) _thread.detach();
  if (_thread.joinable()) _thread.join();
}

@end

@implementation NSURLSessionDataTask {
  NSURLSession* _session;
  NSURLRequest* _request;
  Clock::time_point _end;
}

- (instancetype)initWithSession:(NSURLSession*)session
                        request:(NSURLRequest*)request
                     identifier:(NSUInteger)identifier {
  self = [super init];
  if (self != nil) {
    _session = session;
    _request = [request copy];
    _taskIdentifier = identifier;
  }
  return self;
}

// A task is suspended until it is resumed: documentation of -resume.
- (void)resume {
  if (_thread.joinable()) return;
  Loads::shared().add(self);
  _end = Clock::now() + seconds(_session.configuration.timeoutIntervalForResource);
  _thread = std::thread([self] {
    @autoreleasepool {
      [self load];
    }
  });
}

- (void)load {
  NSError* error = nil;
  try {
    [self loadRequest];
  } catch (const LoadFailure& failure) {
    const NSInteger code = _isCancelled ? NSInteger(NSURLErrorCancelled) : failure.code;
    error = [NSError errorWithDomain:NSURLErrorDomain code:code userInfo:nil];
  }
  NSURLSession* session = _session;
  [session tell:^(id<NSURLSessionDataDelegate> delegate) {
    [delegate URLSession:session task:self didCompleteWithError:error];
    [session taskHasEnded:self];
  }];
  // The last use of the session by this thread.
  _session = nil;
}

- (void)loadRequest {
  for (;;) {
    const auto address = addressOf(_request.URL);
    if (!address) throw LoadFailure{NSURLErrorCannotConnectToHost};
    const navora::TcpConnection connection = connect(*address);
    if (![self loadFrom:*address over:connection]) return;
  }
}

// Returns whether a redirect is to be followed.
- (bool)loadFrom:(const Address&)address over:(const navora::TcpConnection&)connection {
  NSHTTPCookieStorage* storage =
      _session.configuration.HTTPShouldSetCookies ? _session.configuration.HTTPCookieStorage : nil;
  std::string cookies;
  if (storage != nil) {
    for (const std::string& cookie : storage->_cookies) {
      cookies += (cookies.empty() ? "" : "; ") + cookie;
    }
  }
  connection.send(requestBytes(_request, address, cookies));

  std::string received;
  while (received.find("\r\n\r\n") == std::string::npos) {
    received += [self receiveFrom:connection];
  }
  const std::size_t headEnd = received.find("\r\n\r\n") + 4;
  const auto reply = navora::HttpReply::parse(received.substr(0, headEnd));
  if (reply.status == 0) throw LoadFailure{NSURLErrorBadServerResponse};
  NSHTTPURLResponse* response = [[NSHTTPURLResponse alloc] initWithURL:_request.URL
                                                            statusCode:reply.status
                                                           HTTPVersion:@"HTTP/1.1"
                                                          headerFields:nil];
  if (const std::string cookie = reply.header("Set-Cookie"); storage != nil && !cookie.empty()) {
    storage->_cookies.push_back(cookie.substr(0, cookie.find(';')));
  }
  if (const std::string location = reply.header("Location");
      reply.status / 100 == 3 && !location.empty()) {
    NSURLRequest* next = [self requestAfter:response to:location];
    if (next != nil) {
      _request = next;
      return true;
    }
  }
  _response = response;
  [self deliverBody:received.substr(headEnd) of:reply over:connection];
  return false;
}

// Asks the delegate, if it wishes to be asked, and waits for its answer.
- (nullable NSURLRequest*)requestAfter:(NSHTTPURLResponse*)response
                                    to:(const std::string&)location {
  NSURL* url = [NSURL URLWithString:stringFromUtf8(location)];
  NSURLRequest* proposed = [NSURLRequest requestWithURL:url != nil ? url : _request.URL
                                            cachePolicy:_request.cachePolicy
                                        timeoutInterval:_request.timeoutInterval];
  struct Answer {
    std::mutex mutex;
    std::optional<NSURLRequest*> request;
  };
  const auto answer = std::make_shared<Answer>();
  NSURLSession* session = _session;
  [session tell:^(id<NSURLSessionDataDelegate> delegate) {
    SEL const selector =
        @selector(URLSession:task:willPerformHTTPRedirection:newRequest:completionHandler:);
    if (![delegate respondsToSelector:selector]) {
      const std::lock_guard lock(answer->mutex);
      answer->request = proposed;
      return;
    }
    NavoraOnceHandler* once = [[NavoraOnceHandler alloc] init];
    [delegate URLSession:session
                              task:self
        willPerformHTTPRedirection:response
                        newRequest:proposed
                 completionHandler:^(NSURLRequest* chosen) {
                   [once call];
                   const std::lock_guard lock(answer->mutex);
                   answer->request = chosen;
                 }];
  }];
  while (!_isCancelled) {
    {
      const std::lock_guard lock(answer->mutex);
      if (answer->request) return *answer->request;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  throw LoadFailure{NSURLErrorCancelled};
}

// Returns what arrives next; fails if the connection ends or nothing arrives in time.
- (std::string)receiveFrom:(const navora::TcpConnection&)connection {
  // Maximum time without data, whichever is shorter: documentation of timeoutIntervalForRequest and
  // of NSURLRequest's timeoutInterval.
  const double longest =
      std::min(_session.configuration.timeoutIntervalForRequest, _request.timeoutInterval);
  const auto until = std::min(Clock::now() + seconds(longest), _end);
  while (!connection.readable(5)) {
    if (_isCancelled) throw LoadFailure{NSURLErrorCancelled};
    if (Clock::now() >= until) throw LoadFailure{NSURLErrorTimedOut};
  }
  std::string bytes = connection.receiveSome();
  if (_isCancelled) throw LoadFailure{NSURLErrorCancelled};
  if (bytes.empty()) throw LoadFailure{NSURLErrorNetworkConnectionLost};
  return bytes;
}

// Delivers as much as has arrived at a time, never less than there is in it.
- (void)deliverBody:(std::string)bytes
                 of:(const navora::HttpReply&)reply
               over:(const navora::TcpConnection&)connection {
  const std::string length = reply.header("Content-Length");
  if (length.empty()) navora::objc::fail("a response without Content-Length");
  std::size_t rest = std::stoull(length);
  while (rest > 0) {
    if (bytes.empty()) bytes = [self receiveFrom:connection];
    bytes.resize(std::min(bytes.size(), rest));
    rest -= bytes.size();
    NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
    NSURLSession* session = _session;
    [session tell:^(id<NSURLSessionDataDelegate> delegate) {
      if (!self->_isCancelled) [delegate URLSession:session dataTask:self didReceiveData:data];
    }];
    bytes.clear();
  }
}

@end

@implementation NSURLSession {
  id<NSURLSessionDelegate> _delegate;
  NSOperationQueue* _queue;
  NSMutableArray<NSURLSessionTask*>* _tasks;
  NSUInteger _lastIdentifier;
  BOOL _isInvalid;
  // A session exists until it is invalidated, even without references: documentation of
  // +sessionWithConfiguration:delegate:delegateQueue:.
  NSURLSession* _itself;
}

@synthesize configuration = _configuration;

+ (NSURLSession*)sessionWithConfiguration:(NSURLSessionConfiguration*)configuration
                                 delegate:(nullable id<NSURLSessionDelegate>)delegate
                            delegateQueue:(nullable NSOperationQueue*)queue {
  if (queue != [NSOperationQueue mainQueue]) navora::objc::fail("a queue that no double knows");
  NSURLSession* session = [[self alloc] init];
  session->_configuration = [configuration copy];
  session->_delegate = delegate;
  session->_queue = queue;
  session->_tasks = [NSMutableArray array];
  session->_itself = session;
  return session;
}

- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request {
  if (_isInvalid) {
    navora::objc::raise("NSGenericException", "a task created in an invalidated session");
  }
  NSURLSessionDataTask* task = [[NSURLSessionDataTask alloc] initWithSession:self
                                                                     request:request
                                                                  identifier:++_lastIdentifier];
  [_tasks addObject:task];
  return task;
}

- (void)invalidateAndCancel {
  _isInvalid = YES;
  for (NSURLSessionTask* task in _tasks) {
    [task cancel];
  }
  [self endIfIdle];
}

- (void)tell:(void (^)(id<NSURLSessionDataDelegate>))message {
  [_queue addOperationWithBlock:^{
    message((id<NSURLSessionDataDelegate>)self->_delegate);
  }];
}

- (void)taskHasEnded:(NSURLSessionTask*)task {
  Loads::shared().remove(task);
  [task waitForThread];
  [_tasks removeObjectIdenticalTo:task];
  [self endIfIdle];
}

// Told once, after the last task: documentation of -invalidateAndCancel.
- (void)endIfIdle {
  if (!_isInvalid || _tasks.count > 0 || _itself == nil) return;
  [self tell:^(id<NSURLSessionDataDelegate> delegate) {
    if ([delegate respondsToSelector:@selector(URLSession:didBecomeInvalidWithError:)]) {
      [delegate URLSession:self didBecomeInvalidWithError:nil];
    }
    self->_delegate = nil;
  }];
  _itself = nil;
}

@end
