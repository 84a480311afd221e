#pragma once

#import <Foundation/NSObjCRuntime.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
@property(readonly) NSUInteger hash;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)conformsToProtocol:(Protocol*)aProtocol;
- (BOOL)respondsToSelector:(SEL)aSelector;
@property(readonly, copy) NSString* description;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
- (instancetype)init NS_DESIGNATED_INITIALIZER;
+ (instancetype)new;
+ (instancetype)alloc;
+ (Class)class;
- (id)copy;
- (id)mutableCopy;
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
@end

@interface NSNull : NSObject <NSCopying>
+ (NSNull*)null;
@end

NS_ASSUME_NONNULL_END
