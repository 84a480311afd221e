#pragma once

#import <Foundation/NSObjCRuntime.h>
#import <objc/runtime.h>

NS_ASSUME_NONNULL_BEGIN

@class NSCoder;
@class NSDictionary<__covariant KeyType, __covariant ObjectType>;
@class NSString;

typedef NSString* NSKeyValueChangeKey;
typedef NS_OPTIONS(NSUInteger, NSKeyValueObservingOptions) {
  NSKeyValueObservingOptionNew = 0x01,
};

// Opaque; the frameworks ignore it.
typedef struct _NSZone NSZone;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
@property(readonly) NSUInteger hash;
@property(readonly) Class superclass;
- (Class)class;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)conformsToProtocol:(Protocol*)aProtocol;
- (BOOL)respondsToSelector:(SEL)aSelector;
@property(readonly, copy) NSString* description;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
  // Part of every instance's layout, on which the compiler relies.
  Class isa __attribute__((deprecated));
}
- (instancetype)init NS_DESIGNATED_INITIALIZER;
+ (instancetype)new;
+ (instancetype)alloc;
- (void)dealloc;
+ (Class)class;
+ (Class)superclass;
+ (BOOL)instancesRespondToSelector:(SEL)aSelector;
+ (BOOL)conformsToProtocol:(Protocol*)protocol;
- (id)copy;
- (id)mutableCopy;

// From the informal protocol NSKeyValueObserving; declared here so that overrides are recognised.
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(nullable void*)context;
- (void)removeObserver:(NSObject*)observer
            forKeyPath:(NSString*)keyPath
               context:(nullable void*)context;
- (void)willChangeValueForKey:(NSString*)key;
- (void)didChangeValueForKey:(NSString*)key;
- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context;
@end

struct NSFastEnumerationState {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
};
typedef struct NSFastEnumerationState NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

@protocol NSCopying
- (id)copyWithZone:(nullable NSZone*)zone;
@end

@protocol NSMutableCopying
- (id)mutableCopyWithZone:(nullable NSZone*)zone;
@end

@interface NSNull : NSObject <NSCopying>
+ (NSNull*)null;
@end

NS_ASSUME_NONNULL_END
