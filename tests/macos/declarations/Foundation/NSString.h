#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;

// A UTF-16 code unit.
typedef unsigned short unichar;

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying, NSMutableCopying>
@property(readonly) NSUInteger length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (void)getCharacters:(unichar*)buffer range:(NSRange)range;
+ (instancetype)string;
+ (instancetype)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length;
+ (nullable instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding;
- (BOOL)isEqualToString:(NSString*)string;
@property(readonly) double doubleValue;
@property(readonly, copy) NSString* lowercaseString;
- (NSString*)stringByReplacingOccurrencesOfString:(NSString*)target
                                       withString:(NSString*)replacement;
@end

@interface NSMutableString : NSString
- (void)replaceCharactersInRange:(NSRange)range withString:(NSString*)string;
@end

FOUNDATION_EXPORT SEL NSSelectorFromString(NSString* selectorName);
FOUNDATION_EXPORT NSString* NSStringFromClass(Class type);
FOUNDATION_EXPORT void NSLog(NSString* format, ...) __attribute__((format(__NSString__, 1, 2)));

NS_ASSUME_NONNULL_END
