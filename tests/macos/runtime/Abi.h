#pragma once

#include <cstddef>
#include <cstdint>

#import <objc/runtime.h>

// What clang writes into object files for -fobjc-runtime=macosx. Source: the comments on the
// structures in LLVM's clang/lib/CodeGen/CGObjCMac.cpp.

namespace navora::objc {

struct ClassData;
struct ProtocolList;

struct MethodDescription {
  const char* name;
  const char* types;
  IMP implementation;
};

// `count` elements follow, of the type that the list is named after.
template <typename Element>
struct List {
  std::uint32_t elementSize;
  std::uint32_t count;

  const Element* begin() const { return reinterpret_cast<const Element*>(this + 1); }
  const Element* end() const { return begin() + count; }
};

struct InstanceVariable {
  // Null for an unnamed bit-field.
  std::size_t* offset;
  const char* name;
  const char* type;
  std::uint32_t alignmentLog2;
  std::uint32_t size;
};

struct ClassDescription {
  std::uint32_t flags;
  std::uint32_t instanceStart;
  std::uint32_t instanceSize;
  std::uint32_t reserved;
  const std::uint8_t* strongLayout;
  const char* name;
  const List<MethodDescription>* methods;
  const ProtocolList* protocols;
  const List<InstanceVariable>* variables;
  const std::uint8_t* weakLayout;
  const void* properties;
};
constexpr std::uint32_t metaclassFlag = 1;

struct ClassObject {
  ClassObject* isa;
  ClassObject* superclass;
  void* cache;
  // Unused by the compiler; set when the runtime starts.
  ClassData* data;
  ClassDescription* description;
};

struct ProtocolObject {
  void* isa;
  const char* name;
  const ProtocolList* protocols;
  const List<MethodDescription>* instanceMethods;
  const List<MethodDescription>* classMethods;
  const List<MethodDescription>* optionalInstanceMethods;
  const List<MethodDescription>* optionalClassMethods;
};

struct ProtocolList {
  std::size_t count;

  const ProtocolObject* const* begin() const {
    return reinterpret_cast<const ProtocolObject* const*>(this + 1);
  }
  const ProtocolObject* const* end() const { return begin() + count; }
};

struct CategoryObject {
  const char* name;
  ClassObject* owner;
  const List<MethodDescription>* instanceMethods;
  const List<MethodDescription>* classMethods;
  const ProtocolList* protocols;
};

// The argument of a message to `super`.
struct SuperReceiver {
  id receiver;
  // The class whose method sends the message.
  ClassObject* sender;
};

// The common part of every block (clang's documentation of the block ABI).
struct BlockObject {
  void* isa;
  int flags;
};
// Set in blocks on the heap, whose class is not a reliable sign of it: copies keep the class of
// blocks on the stack (libblocksruntime 0.4.1).
constexpr int heapBlockFlag = 1 << 24;

}  // namespace navora::objc
