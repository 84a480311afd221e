#pragma once

#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying>
@property(readonly, copy) NSNotificationName name;
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly, copy) NSDictionary<NSString*, NSString*>* environment;
@end

@interface NSUUID : NSObject <NSCopying>
+ (instancetype)UUID;
// Upper case. See Apple developer documentation, NSUUID.
@property(readonly, copy) NSString* UUIDString;
@end

@interface NSUndoManager : NSObject
- (void)removeAllActions;
@end

@interface NSLocale : NSObject <NSCopying>
@property(class, readonly, copy) NSArray<NSString*>* preferredLanguages;
@end

@interface NSTimeZone : NSObject <NSCopying>
@property(class, readonly, copy) NSTimeZone* systemTimeZone;
+ (void)resetSystemTimeZone;
@property(readonly, copy) NSString* name;
@end

FOUNDATION_EXPORT NSNotificationName const NSSystemTimeZoneDidChangeNotification;

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
- (nullable NSURL*)URLForResource:(nullable NSString*)name
                    withExtension:(nullable NSString*)extension;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
@end

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) {
  NSApplicationSupportDirectory = 14,
};
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) {
  NSUserDomainMask = 1,
};
FOUNDATION_EXPORT NSArray<NSString*>* NSSearchPathForDirectoriesInDomains(
    NSSearchPathDirectory directory, NSSearchPathDomainMask domainMask, BOOL expandTilde);

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
- (void)removeObjectForKey:(NSString*)defaultName;
@end

NS_ASSUME_NONNULL_END
