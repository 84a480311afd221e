#pragma once

#import <WebKit/WKNavigation.h>

NS_ASSUME_NONNULL_BEGIN

@protocol WKDownloadDelegate;

// All of this since macOS 11.3, see Apple developer documentation, WKDownload and
// WKDownloadDelegate.
@interface WKDownload : NSObject
@property(nullable, weak) id<WKDownloadDelegate> delegate;
- (void)cancel:(void (^_Nullable)(NSData* _Nullable resumeData))completionHandler;
@end

typedef NS_ENUM(NSInteger, WKDownloadRedirectPolicy) {
  WKDownloadRedirectPolicyCancel,
  WKDownloadRedirectPolicyAllow,
};

@protocol WKDownloadDelegate <NSObject>
@required
- (void)download:(WKDownload*)download
    decideDestinationUsingResponse:(NSURLResponse*)response
                 suggestedFilename:(NSString*)suggestedFilename
                 completionHandler:(void (^)(NSURL* _Nullable destination))completionHandler;
@optional
- (void)download:(WKDownload*)download
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
               decisionHandler:(void (^)(WKDownloadRedirectPolicy))decisionHandler;
- (void)downloadDidFinish:(WKDownload*)download;
- (void)download:(WKDownload*)download
    didFailWithError:(NSError*)error
          resumeData:(nullable NSData*)resumeData;
@end

NS_ASSUME_NONNULL_END
