#pragma once

#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying>
@property(readonly, copy) NSNotificationName name;
@property(nullable, readonly, strong) id object;
+ (instancetype)notificationWithName:(NSNotificationName)name object:(nullable id)object;
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
- (void)addOperationWithBlock:(void (^)(void))block;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
- (void)postNotificationName:(NSNotificationName)name object:(nullable id)object;
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

// See Apple developer documentation, FileManager.SearchPathDirectory and SearchPathDomainMask.
typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) {
  NSApplicationSupportDirectory = 14,
  NSItemReplacementDirectory = 99,
};
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) {
  NSUserDomainMask = 1,
};

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
// With NSItemReplacementDirectory and `create` a new folder on the volume of `url`.
- (nullable NSURL*)URLForDirectory:(NSSearchPathDirectory)directory
                          inDomain:(NSSearchPathDomainMask)domain
                 appropriateForURL:(nullable NSURL*)url
                            create:(BOOL)shouldCreate
                             error:(NSError* _Nullable* _Nullable)error;
- (BOOL)moveItemAtURL:(NSURL*)srcURL
                toURL:(NSURL*)dstURL
                error:(NSError* _Nullable* _Nullable)error;
- (BOOL)removeItemAtURL:(NSURL*)URL error:(NSError* _Nullable* _Nullable)error;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
- (nullable NSURL*)URLForResource:(nullable NSString*)name
                    withExtension:(nullable NSString*)extension;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
@end

FOUNDATION_EXPORT NSArray<NSString*>* NSSearchPathForDirectoriesInDomains(
    NSSearchPathDirectory directory, NSSearchPathDomainMask domainMask, BOOL expandTilde);

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
- (void)removeObjectForKey:(NSString*)defaultName;
@end

NS_ASSUME_NONNULL_END
