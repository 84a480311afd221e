#pragma once

#import <Foundation/NSValues.h>

NS_ASSUME_NONNULL_BEGIN

typedef double NSTimeInterval;

@interface NSURL : NSObject <NSCopying>
+ (nullable instancetype)URLWithString:(NSString*)string;
+ (NSURL*)URLWithDataRepresentation:(NSData*)data relativeToURL:(nullable NSURL*)baseURL;
+ (NSURL*)fileURLWithPath:(NSString*)path;
@property(nullable, readonly, copy) NSString* absoluteString;
@property(nullable, readonly, copy) NSString* path;
@end

typedef NS_ENUM(NSUInteger, NSURLRequestCachePolicy) {
  NSURLRequestUseProtocolCachePolicy = 0,
  NSURLRequestReloadIgnoringLocalCacheData = 1,
};

@interface NSURLRequest : NSObject <NSCopying>
+ (instancetype)requestWithURL:(NSURL*)url
                   cachePolicy:(NSURLRequestCachePolicy)cachePolicy
               timeoutInterval:(NSTimeInterval)timeoutInterval;
@property(nullable, readonly, copy) NSURL* URL;
@property(readonly) NSURLRequestCachePolicy cachePolicy;
@property(readonly) NSTimeInterval timeoutInterval;
@property(nullable, readonly, copy) NSString* HTTPMethod;
@property(nullable, readonly, copy) NSData* HTTPBody;
@property(nullable, readonly, copy) NSDictionary<NSString*, NSString*>* allHTTPHeaderFields;
@end

@interface NSMutableURLRequest : NSURLRequest
@property(copy) NSString* HTTPMethod;
@property(nullable, copy) NSData* HTTPBody;
- (void)setValue:(nullable NSString*)value forHTTPHeaderField:(NSString*)field;
@end

@interface NSHTTPCookie : NSObject
@property(readonly, copy) NSString* name;
@property(readonly, copy) NSString* value;
// Begins with a dot if the cookie also belongs to subdomains.
@property(readonly, copy) NSString* domain;
@property(readonly, copy) NSString* path;
@property(readonly, getter=isSecure) BOOL secure;
@property(nullable, readonly, copy) NSDate* expiresDate;
@end

@interface NSURLResponse : NSObject <NSCopying>
@property(nullable, readonly, copy) NSURL* URL;
@end

@interface NSHTTPURLResponse : NSURLResponse
- (nullable instancetype)initWithURL:(NSURL*)url
                          statusCode:(NSInteger)statusCode
                         HTTPVersion:(nullable NSString*)HTTPVersion
                        headerFields:(nullable NSDictionary<NSString*, NSString*>*)headerFields;
@property(readonly) NSInteger statusCode;
@end

NS_ASSUME_NONNULL_END
