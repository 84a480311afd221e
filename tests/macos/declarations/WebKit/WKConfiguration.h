#pragma once

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

@class WKFrameInfo;
@class WKUserContentController;

@interface WKHTTPCookieStore : NSObject
- (void)getAllCookies:(void (^)(NSArray<NSHTTPCookie*>* cookies))completionHandler;
@end

@interface WKWebsiteDataStore : NSObject
+ (WKWebsiteDataStore*)defaultDataStore;
@property(readonly, strong) WKHTTPCookieStore* httpCookieStore;
@end

typedef NS_ENUM(NSInteger, WKUserScriptInjectionTime) {
  WKUserScriptInjectionTimeAtDocumentStart,
  WKUserScriptInjectionTimeAtDocumentEnd,
};

@interface WKUserScript : NSObject <NSCopying>
- (instancetype)initWithSource:(NSString*)source
                 injectionTime:(WKUserScriptInjectionTime)injectionTime
              forMainFrameOnly:(BOOL)forMainFrameOnly;
@end

@interface WKScriptMessage : NSObject
@property(readonly, copy) id body;
@property(readonly, copy) WKFrameInfo* frameInfo;
@property(readonly, copy) NSString* name;
@end

@protocol WKScriptMessageHandler <NSObject>
@required
- (void)userContentController:(WKUserContentController*)userContentController
      didReceiveScriptMessage:(WKScriptMessage*)message;
@end

@interface WKUserContentController : NSObject
- (void)addUserScript:(WKUserScript*)userScript;
- (void)addScriptMessageHandler:(id<WKScriptMessageHandler>)scriptMessageHandler
                           name:(NSString*)name;
// Since macOS 11, see Apple developer documentation, WKUserContentController.
- (void)removeAllScriptMessageHandlers;
@end

@interface WKWebViewConfiguration : NSObject <NSCopying>
@property(strong) WKWebsiteDataStore* websiteDataStore;
@property(strong) WKUserContentController* userContentController;
@end

NS_ASSUME_NONNULL_END
