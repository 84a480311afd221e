#include <unordered_map>
#include <vector>

#import <Foundation/Foundation.h>

#include "runtime/Runtime.h"

namespace {

[[noreturn]] void raiseRange(NSUInteger index, NSUInteger count) {
  navora::objc::raise("NSRangeException", "index " + std::to_string(index) + " in an array of " +
                                              std::to_string(count));
}

void requireObject(id object, const char* method) {
  if (object == nil) {
    navora::objc::raise("NSInvalidArgumentException", std::string(method) + ": object is nil");
  }
}

// Gives the elements `first…last` of a collection in one piece, or the rest of them in several.
NSUInteger enumerate(NSFastEnumerationState& state, const std::vector<id>& elements,
                     id __unsafe_unretained* buffer, NSUInteger length, unsigned long* changes) {
  state.mutationsPtr = changes;
  state.itemsPtr = buffer;
  NSUInteger count = 0;
  while (count < length && state.state < elements.size()) {
    buffer[count++] = elements[state.state++];
  }
  return count;
}

struct Hash {
  std::size_t operator()(id key) const { return [key hash]; }
};
struct Equal {
  bool operator()(id one, id other) const { return [one isEqual:other]; }
};

}  // namespace

// What the literals @[] and @{} of the compiler are.
extern "C" {
id __NSArray0__;
id __NSDictionary0__;
}
__attribute__((constructor(102))) static void makeEmptyLiterals() {
  __NSArray0__ = navora::objc::keepForever([NSArray array]);
  __NSDictionary0__ = navora::objc::keepForever([NSDictionary dictionary]);
}

@implementation NSArray {
 @package
  std::vector<id> _objects;
  unsigned long _changes;
}

+ (instancetype)array {
  return [[self alloc] init];
}

+ (instancetype)arrayWithObjects:(const id _Nonnull[])objects count:(NSUInteger)count {
  NSArray* array = [[self alloc] init];
  for (NSUInteger index = 0; index < count; ++index) {
    requireObject(objects[index], "+[NSArray arrayWithObjects:count:]");
    array->_objects.push_back(objects[index]);
  }
  return array;
}

- (NSUInteger)count {
  return _objects.size();
}

- (id)objectAtIndex:(NSUInteger)index {
  if (index >= _objects.size()) raiseRange(index, _objects.size());
  return _objects[index];
}

- (id)objectAtIndexedSubscript:(NSUInteger)index {
  return [self objectAtIndex:index];
}

- (BOOL)isEqual:(id)object {
  if (![object isKindOfClass:[NSArray class]]) return NO;
  const std::vector<id>& others = ((NSArray*)object)->_objects;
  return std::equal(_objects.begin(), _objects.end(), others.begin(), others.end(), Equal());
}

// Equal arrays have equal counts.
- (NSUInteger)hash {
  return _objects.size();
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[])buffer
                                    count:(NSUInteger)length {
  return enumerate(*state, _objects, buffer, length, &_changes);
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

- (id)mutableCopyWithZone:(nullable NSZone*)zone {
  NSMutableArray* copy = [NSMutableArray array];
  copy->_objects = _objects;
  return copy;
}

@end

@implementation NSMutableArray

- (void)addObject:(id)object {
  requireObject(object, "-[NSMutableArray addObject:]");
  ++_changes;
  _objects.push_back(object);
}

- (void)removeObjectIdenticalTo:(id)object {
  ++_changes;
  std::erase(_objects, object);
}

- (id)copyWithZone:(nullable NSZone*)zone {
  NSArray* copy = [NSArray array];
  copy->_objects = _objects;
  return copy;
}

@end

@implementation NSDictionary {
 @package
  std::unordered_map<id, id, Hash, Equal> _values;
  unsigned long _changes;
}

+ (instancetype)dictionary {
  return [[self alloc] init];
}

+ (instancetype)dictionaryWithObjects:(const id _Nonnull[])objects
                              forKeys:(const id<NSCopying> _Nonnull[])keys
                                count:(NSUInteger)count {
  NSDictionary* dictionary = [[self alloc] init];
  for (NSUInteger index = 0; index < count; ++index) {
    requireObject(objects[index], "+[NSDictionary dictionaryWithObjects:forKeys:count:]");
    requireObject(keys[index], "+[NSDictionary dictionaryWithObjects:forKeys:count:]");
    dictionary->_values[[(id)keys[index] copy]] = objects[index];
  }
  return dictionary;
}

- (NSUInteger)count {
  return _values.size();
}

- (nullable id)objectForKey:(id)key {
  const auto found = key == nil ? _values.end() : _values.find(key);
  return found == _values.end() ? nil : found->second;
}

- (nullable id)objectForKeyedSubscript:(id)key {
  return [self objectForKey:key];
}

- (BOOL)isEqual:(id)object {
  if (![object isKindOfClass:[NSDictionary class]]) return NO;
  const auto& others = ((NSDictionary*)object)->_values;
  if (_values.size() != others.size()) return NO;
  for (const auto& [key, value] : _values) {
    const auto other = others.find(key);
    if (other == others.end() || ![value isEqual:other->second]) return NO;
  }
  return YES;
}

- (NSUInteger)hash {
  return _values.size();
}

// Enumerates the keys.
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[])buffer
                                    count:(NSUInteger)length {
  std::vector<id> keys;
  for (const auto& [key, value] : _values) {
    keys.push_back(key);
  }
  return enumerate(*state, keys, buffer, length, &_changes);
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

- (id)mutableCopyWithZone:(nullable NSZone*)zone {
  NSMutableDictionary* copy = [NSMutableDictionary dictionary];
  copy->_values = _values;
  return copy;
}

@end

@implementation NSMutableDictionary

// Copies the key; nil removes it. Documentation of -setObject:forKeyedSubscript:.
- (void)setObject:(nullable id)object forKeyedSubscript:(id<NSCopying>)key {
  requireObject(key, "-[NSMutableDictionary setObject:forKeyedSubscript:]");
  ++_changes;
  if (object == nil) {
    _values.erase(key);
  } else {
    _values.insert_or_assign([(id)key copy], object);
  }
}

- (id)copyWithZone:(nullable NSZone*)zone {
  NSDictionary* copy = [NSDictionary dictionary];
  copy->_values = _values;
  return copy;
}

@end
