#pragma once

#import <WebKit/WKNavigation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKSecurityOrigin;
@class WKWindowFeatures;

@interface WKOpenPanelParameters : NSObject
@property(readonly) BOOL allowsMultipleSelection;
// Since macOS 10.13.4, see Apple developer documentation, WKOpenPanelParameters.
@property(readonly) BOOL allowsDirectories;
@end

typedef NS_ENUM(NSInteger, WKPermissionDecision) {
  WKPermissionDecisionPrompt,
  WKPermissionDecisionGrant,
  WKPermissionDecisionDeny,
};

typedef NS_ENUM(NSInteger, WKMediaCaptureType) {
  WKMediaCaptureTypeCamera,
  WKMediaCaptureTypeMicrophone,
  WKMediaCaptureTypeCameraAndMicrophone,
};

@protocol WKUIDelegate <NSObject>
@optional
- (nullable WKWebView*)webView:(WKWebView*)webView
    createWebViewWithConfiguration:(WKWebViewConfiguration*)configuration
               forNavigationAction:(WKNavigationAction*)navigationAction
                    windowFeatures:(WKWindowFeatures*)windowFeatures;
- (void)webView:(WKWebView*)webView
    runJavaScriptAlertPanelWithMessage:(NSString*)message
                      initiatedByFrame:(WKFrameInfo*)frame
                     completionHandler:(void (^)(void))completionHandler;
- (void)webView:(WKWebView*)webView
    runJavaScriptConfirmPanelWithMessage:(NSString*)message
                        initiatedByFrame:(WKFrameInfo*)frame
                       completionHandler:(void (^)(BOOL result))completionHandler;
- (void)webView:(WKWebView*)webView
    runJavaScriptTextInputPanelWithPrompt:(NSString*)prompt
                              defaultText:(nullable NSString*)defaultText
                         initiatedByFrame:(WKFrameInfo*)frame
                        completionHandler:(void (^)(NSString* _Nullable result))completionHandler;
- (void)webView:(WKWebView*)webView
    runOpenPanelWithParameters:(WKOpenPanelParameters*)parameters
              initiatedByFrame:(WKFrameInfo*)frame
             completionHandler:(void (^)(NSArray<NSURL*>* _Nullable URLs))completionHandler;
// Since macOS 12.
- (void)webView:(WKWebView*)webView
    requestMediaCapturePermissionForOrigin:(WKSecurityOrigin*)origin
                          initiatedByFrame:(WKFrameInfo*)frame
                                      type:(WKMediaCaptureType)type
                           decisionHandler:(void (^)(WKPermissionDecision decision))decisionHandler;
@end

@interface WKWebView : NSView
- (instancetype)initWithFrame:(CGRect)frame
                configuration:(WKWebViewConfiguration*)configuration NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithFrame:(CGRect)frame NS_UNAVAILABLE;
@property(readonly, copy) WKWebViewConfiguration* configuration;
@property(nullable, weak) id<WKNavigationDelegate> navigationDelegate;
@property(nullable, weak) id<WKUIDelegate> UIDelegate;
@property(nullable, readonly, copy) NSURL* URL;
@property(readonly, getter=isLoading) BOOL loading;
@property BOOL allowsBackForwardNavigationGestures;
@property(nullable, copy) NSString* customUserAgent;
- (nullable WKNavigation*)loadRequest:(NSURLRequest*)request;
- (void)evaluateJavaScript:(NSString*)javaScriptString
         completionHandler:
             (void (^_Nullable)(id _Nullable result, NSError* _Nullable error))completionHandler;
@end

NS_ASSUME_NONNULL_END
