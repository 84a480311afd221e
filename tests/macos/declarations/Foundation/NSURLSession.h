#pragma once

#import <Foundation/NSSystem.h>

NS_ASSUME_NONNULL_BEGIN

@class NSURLSession;

@interface NSHTTPCookieStorage : NSObject
@end

@interface NSURLCache : NSObject
@end

@interface NSURLSessionConfiguration : NSObject <NSCopying>
@property(class, readonly, strong) NSURLSessionConfiguration* ephemeralSessionConfiguration;
@property(nullable, strong) NSHTTPCookieStorage* HTTPCookieStorage;
@property BOOL HTTPShouldSetCookies;
@property(nullable, strong) NSURLCache* URLCache;
@property NSURLRequestCachePolicy requestCachePolicy;
@property NSTimeInterval timeoutIntervalForRequest;
@property NSTimeInterval timeoutIntervalForResource;
@end

@interface NSURLSessionTask : NSObject
// Unique within its session.
@property(readonly) NSUInteger taskIdentifier;
@property(nullable, readonly, copy) NSURLResponse* response;
- (void)resume;
- (void)cancel;
@end

@interface NSURLSessionDataTask : NSURLSessionTask
@end

@protocol NSURLSessionDelegate <NSObject>
@optional
- (void)URLSession:(NSURLSession*)session didBecomeInvalidWithError:(nullable NSError*)error;
@end

@protocol NSURLSessionTaskDelegate <NSURLSessionDelegate>
@optional
// Passing nil makes the redirect itself the task's response. See Apple developer
// documentation, NSURLSessionTaskDelegate.
- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest* _Nullable))completionHandler;
- (void)URLSession:(NSURLSession*)session
                    task:(NSURLSessionTask*)task
    didCompleteWithError:(nullable NSError*)error;
@end

@protocol NSURLSessionDataDelegate <NSURLSessionTaskDelegate>
@optional
- (void)URLSession:(NSURLSession*)session
          dataTask:(NSURLSessionDataTask*)dataTask
    didReceiveData:(NSData*)data;
@end

@interface NSURLSession : NSObject
// The session retains its delegate until it is invalidated.
+ (NSURLSession*)sessionWithConfiguration:(NSURLSessionConfiguration*)configuration
                                 delegate:(nullable id<NSURLSessionDelegate>)delegate
                            delegateQueue:(nullable NSOperationQueue*)queue;
- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request;
- (void)invalidateAndCancel;
@end

NS_ASSUME_NONNULL_END
