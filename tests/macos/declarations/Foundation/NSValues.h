#pragma once

#import <Foundation/NSCollections.h>
#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

@class NSURL;

@interface NSNumber : NSObject <NSCopying>
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInteger:(NSInteger)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value;
+ (NSNumber*)numberWithDouble:(double)value;
@property(readonly) double doubleValue;
@property(readonly) BOOL boolValue;
@end

@interface NSData : NSObject <NSCopying>
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes NS_RETURNS_INNER_POINTER;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
+ (nullable instancetype)dataWithContentsOfURL:(NSURL*)url;
@end

@interface NSDate : NSObject <NSCopying>
@property(readonly) double timeIntervalSince1970;
@end

typedef NSString* NSErrorDomain;
typedef NSString* NSErrorUserInfoKey;

@interface NSError : NSObject <NSCopying>
+ (instancetype)errorWithDomain:(NSErrorDomain)domain
                           code:(NSInteger)code
                       userInfo:(nullable NSDictionary<NSErrorUserInfoKey, id>*)userInfo;
@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSString* localizedDescription;
@end

FOUNDATION_EXPORT NSErrorDomain const NSCocoaErrorDomain;
FOUNDATION_EXPORT NSErrorDomain const NSPOSIXErrorDomain;
FOUNDATION_EXPORT NSErrorDomain const NSURLErrorDomain;
// See Apple developer documentation, "URL Loading System Error Codes".
enum : NSInteger {
  NSURLErrorCancelled = -999,
  NSURLErrorBadURL = -1000,
  NSURLErrorTimedOut = -1001,
  NSURLErrorUnsupportedURL = -1002,
  NSURLErrorCannotConnectToHost = -1004,
  NSURLErrorNetworkConnectionLost = -1005,
  NSURLErrorBadServerResponse = -1011,
};
FOUNDATION_EXPORT NSErrorUserInfoKey const NSLocalizedDescriptionKey;

typedef NS_OPTIONS(NSUInteger, NSJSONWritingOptions) {
  NSJSONWritingFragmentsAllowed = 1UL << 2,
};

@interface NSJSONSerialization : NSObject
+ (nullable NSData*)dataWithJSONObject:(id)object
                               options:(NSJSONWritingOptions)options
                                 error:(NSError* _Nullable* _Nullable)error;
@end

NS_ASSUME_NONNULL_END
