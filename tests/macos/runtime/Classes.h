#pragma once

#include <unordered_map>
#include <vector>

#include "runtime/Abi.h"

// Classes as the runtime sees them.

namespace navora::objc {

struct ClassData {
  // The class's own methods, those of its categories included.
  std::unordered_map<SEL, IMP> methods;
  std::vector<const ProtocolList*> protocols;
  IMP construct = nullptr;
  IMP destruct = nullptr;
  bool isImmortal = false;
};

inline ClassObject* toClassObject(Class type) {
  return reinterpret_cast<ClassObject*>(type);
}
inline Class toClass(ClassObject* type) {
  return reinterpret_cast<Class>(type);
}
inline ClassObject* classOf(const void* object) {
  return *static_cast<ClassObject* const*>(object);
}

inline bool isMetaclass(const ClassObject* type) {
  return (type->description->flags & metaclassFlag) != 0;
}
// Whether the object is a class.
inline bool isClass(const void* object) {
  return isMetaclass(classOf(object));
}

// Returns nullptr if neither the class nor a superclass has such a method.
IMP findMethod(const ClassObject* type, SEL selector);

bool isBlock(const void* object);
inline bool isHeapBlock(const void* object) {
  return isBlock(object) && (static_cast<const BlockObject*>(object)->flags & heapBlockFlag) != 0;
}

}  // namespace navora::objc
