// The root class, and those that the compiler or the runtime needs.

#include <Block.h>

#import <Foundation/Foundation.h>

#include "runtime/Runtime.h"

extern "C" void navora_objc_dispose(id object);

// Key-value observing is implemented by the double of Foundation, in a category.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wincomplete-implementation"

@implementation NSObject

+ (instancetype)alloc {
  return class_createInstance(self, 0);
}

+ (instancetype)new {
  return [[self alloc] init];
}

- (instancetype)init {
  return self;
}

- (void)dealloc {
  navora_objc_dispose(self);
}

+ (Class)class {
  return self;
}

- (Class)class {
  return object_getClass(self);
}

+ (Class)superclass {
  return class_getSuperclass(self);
}

- (Class)superclass {
  return class_getSuperclass(object_getClass(self));
}

// A class without -copyWithZone: does not answer the message, which is reported by name.
- (id)copy {
  return [(id<NSCopying>)self copyWithZone:nullptr];
}

- (id)mutableCopy {
  return [(id<NSMutableCopying>)self mutableCopyWithZone:nullptr];
}

- (BOOL)isEqual:(id)object {
  return self == object;
}

- (NSUInteger)hash {
  return reinterpret_cast<NSUInteger>(self) >> 4;
}

- (BOOL)isKindOfClass:(Class)type {
  for (Class own = object_getClass(self); own != Nil; own = class_getSuperclass(own)) {
    if (own == type) return YES;
  }
  return NO;
}

+ (BOOL)instancesRespondToSelector:(SEL)selector {
  return class_respondsToSelector(self, selector);
}

+ (BOOL)respondsToSelector:(SEL)selector {
  return class_respondsToSelector(object_getClass(self), selector);
}

- (BOOL)respondsToSelector:(SEL)selector {
  return class_respondsToSelector(object_getClass(self), selector);
}

+ (BOOL)conformsToProtocol:(Protocol*)protocol {
  for (Class type = self; type != Nil; type = class_getSuperclass(type)) {
    if (class_conformsToProtocol(type, protocol)) return YES;
  }
  return NO;
}

- (BOOL)conformsToProtocol:(Protocol*)protocol {
  return [object_getClass(self) conformsToProtocol:protocol];
}

- (NSString*)description {
  return [NSString stringWithUTF8String:class_getName(object_getClass(self))];
}

@end

#pragma clang diagnostic pop

@interface Protocol : NSObject
@end

@implementation Protocol
@end

// The class of blocks in every kind of storage.
@interface NavoraBlock : NSObject
@end

@implementation NavoraBlock

- (id)copy {
  return static_cast<id>(_Block_copy(self));
}

@end
