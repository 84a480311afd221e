#pragma once

#import <WebKit/WKConfiguration.h>

NS_ASSUME_NONNULL_BEGIN

@class WKDownload;
@class WKNavigation;
@class WKWebView;

@interface WKFrameInfo : NSObject <NSCopying>
@property(readonly, getter=isMainFrame) BOOL mainFrame;
@property(readonly, copy) NSURLRequest* request;
@end

typedef NS_ENUM(NSInteger, WKNavigationType) {
  WKNavigationTypeLinkActivated,
  WKNavigationTypeFormSubmitted,
  WKNavigationTypeBackForward,
  WKNavigationTypeReload,
  WKNavigationTypeFormResubmitted,
  WKNavigationTypeOther = -1,
};

// The download policies and shouldPerformDownload exist since macOS 11.3, see Apple developer
// documentation, WKNavigationActionPolicy.
typedef NS_ENUM(NSInteger, WKNavigationActionPolicy) {
  WKNavigationActionPolicyCancel,
  WKNavigationActionPolicyAllow,
  WKNavigationActionPolicyDownload,
};
typedef NS_ENUM(NSInteger, WKNavigationResponsePolicy) {
  WKNavigationResponsePolicyCancel,
  WKNavigationResponsePolicyAllow,
  WKNavigationResponsePolicyDownload,
};

@interface WKNavigationAction : NSObject
@property(readonly, copy) WKFrameInfo* sourceFrame;
@property(nullable, readonly, copy) WKFrameInfo* targetFrame;
@property(readonly) WKNavigationType navigationType;
@property(readonly, copy) NSURLRequest* request;
@property(readonly) BOOL shouldPerformDownload;
@end

@interface WKNavigationResponse : NSObject
@property(readonly, copy) NSURLResponse* response;
@property(readonly) BOOL canShowMIMEType;
@end

@protocol WKNavigationDelegate <NSObject>
@optional
- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)navigationAction
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler;
- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationResponse:(WKNavigationResponse*)navigationResponse
                      decisionHandler:(void (^)(WKNavigationResponsePolicy))decisionHandler;
// WebKit declares `navigation` as null_unspecified: it may be nil.
- (void)webView:(WKWebView*)webView
    didStartProvisionalNavigation:(null_unspecified WKNavigation*)navigation;
- (void)webView:(WKWebView*)webView
    didFailProvisionalNavigation:(null_unspecified WKNavigation*)navigation
                       withError:(NSError*)error;
- (void)webView:(WKWebView*)webView didFinishNavigation:(null_unspecified WKNavigation*)navigation;
- (void)webView:(WKWebView*)webView
    didFailNavigation:(null_unspecified WKNavigation*)navigation
            withError:(NSError*)error;
- (void)webViewWebContentProcessDidTerminate:(WKWebView*)webView;
// Since macOS 11.3, see Apple developer documentation, WKNavigationDelegate.
- (void)webView:(WKWebView*)webView
     navigationAction:(WKNavigationAction*)navigationAction
    didBecomeDownload:(WKDownload*)download;
- (void)webView:(WKWebView*)webView
    navigationResponse:(WKNavigationResponse*)navigationResponse
     didBecomeDownload:(WKDownload*)download;
@end

NS_ASSUME_NONNULL_END
