// The doubles of Foundation: what they must not let pass, and behaviour that no test of the host
// shows.

#include <atomic>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#import <Foundation/Foundation.h>

#include "contracts/MainLoop.h"
#include "frameworks/Foundation/Strings.h"
#include "tests/support/Tcp.h"

@interface RedirectDelegate : NSObject <NSURLSessionDataDelegate>
@property(nonatomic) int answers;
@property(nonatomic, strong) NSURLRequest* proposed;
@property(nonatomic) NSInteger status;
@property(nonatomic) BOOL done;
@end

@implementation RedirectDelegate

- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest* _Nullable))completionHandler {
  self.proposed = request;
  for (int count = 0; count < self.answers; ++count) {
    completionHandler(request);
  }
}

- (void)URLSession:(NSURLSession*)session
          dataTask:(NSURLSessionDataTask*)dataTask
    didReceiveData:(NSData*)data {
}

- (void)URLSession:(NSURLSession*)session
                    task:(NSURLSessionTask*)task
    didCompleteWithError:(nullable NSError*)error {
  self.status = ((NSHTTPURLResponse*)task.response).statusCode;
  self.done = YES;
}

@end

@interface ObservedValue : NSObject
@property(nonatomic, readonly) int value;
@end

@implementation ObservedValue
@end

@interface Watcher : NSObject
@end

@implementation Watcher

- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context {
}

@end

namespace navora {
namespace {

using doubles::stringOf;

TEST(NSStringDoubleTest, CountsAndKeepsUtf16Units) {
  NSString* text = @"a😀";
  EXPECT_EQ(text.length, 3U);
  EXPECT_EQ([text characterAtIndex:1], 0xD83D);
  EXPECT_EQ([text characterAtIndex:2], 0xDE00);
  NSString* half = stringOf(u"\xD83D");
  EXPECT_EQ(half.length, 1U);
  EXPECT_EQ([half dataUsingEncoding:NSUTF8StringEncoding], nil);
}

TEST(NSStringDoubleTest, ComparesByUnits) {
  EXPECT_TRUE([@"é" isEqualToString:stringOf(u"\u00E9")]);
  EXPECT_FALSE([@"é" isEqualToString:stringOf(u"e\u0301")]);
  EXPECT_EQ(@"text".hash, [NSString stringWithUTF8String:"text"].hash);
  EXPECT_FALSE([@"1" isEqual:[NSNumber numberWithInteger:1]]);
}

TEST(NSStringDoubleTest, ReplacesEveryOccurrence) {
  NSString* replaced = [@"a\r\nb\r\n" stringByReplacingOccurrencesOfString:@"\r\n"
                                                                withString:@"\n"];
  EXPECT_TRUE([replaced isEqualToString:@"a\nb\n"]);
}

TEST(NSStringDoubleTest, MutableCopiesAreIndependent) {
  NSMutableString* text = [@"one" mutableCopy];
  NSString* copy = [text copy];
  [text replaceCharactersInRange:NSMakeRange(1, 2) withString:@"ther"];
  EXPECT_TRUE([text isEqualToString:@"other"]);
  EXPECT_TRUE([copy isEqualToString:@"one"]);
}

TEST(CollectionDoublesTest, KeepEqualKeysOnce) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
  NSMutableString* key = [@"key" mutableCopy];
  dictionary[key] = @"first";
  // The key was copied.
  [key replaceCharactersInRange:NSMakeRange(0, 3) withString:@"other"];
  dictionary[@"key"] = @"second";
  EXPECT_EQ(dictionary.count, 1U);
  EXPECT_TRUE([dictionary[@"key"] isEqualToString:@"second"]);
  EXPECT_EQ(dictionary[@"other"], nil);
  EXPECT_TRUE([dictionary isEqual:@{@"key" : @"second"}]);
}

TEST(CollectionDoublesTest, EnumerateMoreThanOneBuffer) {
  NSMutableArray* array = [NSMutableArray array];
  for (int count = 0; count < 100; ++count) {
    [array addObject:[NSNumber numberWithInteger:count]];
  }
  double sum = 0;
  for (NSNumber* number in array) {
    sum += number.doubleValue;
  }
  EXPECT_EQ(sum, 4950);
}

TEST(CollectionDoublesDeathTest, RefuseNilAndWrongIndices) {
  NSMutableArray* array = [NSMutableArray array];
  id nothing = nil;
  EXPECT_DEATH([array addObject:nothing], "NSInvalidArgumentException: .*addObject");
  EXPECT_DEATH((void)array[0], "NSRangeException: index 0 in an array of 0");
  EXPECT_DEATH((void)@[ nothing ], "NSInvalidArgumentException");
}

TEST(NSUserDefaultsDoubleDeathTest, RefusesWhatIsNoPropertyList) {
  EXPECT_DEATH([[NSUserDefaults standardUserDefaults] setObject:@[ [NSNull null] ] forKey:@"key"],
               "NSInvalidArgumentException: Attempt to insert non-property list object");
}

TEST(NSJSONSerializationDoubleDeathTest, RaisesForWhatJsonCannotExpress) {
  NSArray* array = @[ [NSData dataWithBytes:"x" length:1] ];
  EXPECT_DEATH((void)[NSJSONSerialization dataWithJSONObject:array options:0 error:nil],
               "NSInvalidArgumentException: JSON cannot express NSData");
  EXPECT_DEATH((void)[NSJSONSerialization dataWithJSONObject:@"text" options:0 error:nil],
               "NSInvalidArgumentException: a JSON fragment");
}

TEST(KeyValueObservingDoubleDeathTest, RequiresThatEveryObservationEnds) {
  EXPECT_DEATH(
      {
        ObservedValue* observed = [[ObservedValue alloc] init];
        @autoreleasepool {
          Watcher* watcher = [[Watcher alloc] init];
          [observed addObserver:watcher
                     forKeyPath:@"value"
                        options:NSKeyValueObservingOptionNew
                        context:nullptr];
        }
      },
      "Watcher: deallocated while it takes part in the observation of value");
}

TEST(KeyValueObservingDoubleDeathTest, KnowsItsObserversAndKeys) {
  ObservedValue* observed = [[ObservedValue alloc] init];
  Watcher* watcher = [[Watcher alloc] init];
  EXPECT_DEATH([observed removeObserver:watcher forKeyPath:@"value" context:nullptr],
               "NSRangeException: Watcher is not registered");
  EXPECT_DEATH([observed addObserver:watcher
                          forKeyPath:@"valve"
                             options:NSKeyValueObservingOptionNew
                             context:nullptr],
               "ObservedValue has no key valve");
}

TEST(DispatchDoubleTest, ABlockOfTheMainQueueIsNotInterruptedByAnother) {
  std::string order;
  std::string* log = &order;
  dispatch_async(dispatch_get_main_queue(), ^{
    dispatch_async(dispatch_get_main_queue(), ^{
      *log += "second ";
    });
    // As a modal loop does.
    runPendingEvents();
    *log += "first ";
  });
  runPendingEvents();
  EXPECT_EQ(order, "first second ");
}

TEST(DispatchDoubleDeathTest, WaitingForTheMainQueueIsReported) {
  EXPECT_DEATH(dispatch_sync(dispatch_get_main_queue(),
                             ^{
                             }),
               "dispatch_sync to the main queue");
}

class RedirectDoubleTest : public testing::Test {
 protected:
  // Loads a page that redirects to the server, and answers so many times.
  void load(int answers) {
    delegate_.answers = answers;
    session_ = [NSURLSession
        sessionWithConfiguration:[NSURLSessionConfiguration ephemeralSessionConfiguration]
                        delegate:delegate_
                   delegateQueue:[NSOperationQueue mainQueue]];
    NSURL* url = [NSURL URLWithString:doubles::stringFromUtf8(redirecting_.url())];
    [[session_ dataTaskWithRequest:[NSURLRequest requestWithURL:url
                                                    cachePolicy:NSURLRequestUseProtocolCachePolicy
                                                timeoutInterval:60]] resume];
    EXPECT_TRUE(waitUntil([this] { return delegate_.done; }));
  }
  void TearDown() override { [session_ invalidateAndCancel]; }

  const TcpServer server_{"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"};
  const TcpServer redirecting_{"HTTP/1.1 302 Found\r\nLocation: " + server_.url() +
                               "\r\nContent-Length: 0\r\n\r\n"};
  RedirectDelegate* delegate_ = [[RedirectDelegate alloc] init];
  NSURLSession* session_ = nil;
};

TEST_F(RedirectDoubleTest, IsFollowedIfTheDelegateAgrees) {
  load(1);
  EXPECT_EQ(delegate_.status, 200);
  EXPECT_EQ(server_.connections(), 1);
}

using RedirectDoubleDeathTest = RedirectDoubleTest;

TEST_F(RedirectDoubleDeathTest, MustBeAnsweredOnce) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_DEATH(load(0), "a completion handler was not called");
  EXPECT_DEATH(load(2), "a completion handler was called twice");
}

}  // namespace
}  // namespace navora
