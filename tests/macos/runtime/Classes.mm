#include "runtime/Classes.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_set>

#include "runtime/Runtime.h"

using navora::objc::CategoryObject;
using navora::objc::ClassObject;
using navora::objc::ProtocolObject;
using navora::objc::SuperReceiver;

extern "C" {
// The linker's names for the sections in which clang lists what an object file contains. One that
// no file has does not exist.
extern ClassObject* __start_objc_classlist[] __attribute__((weak));
extern ClassObject* __stop_objc_classlist[] __attribute__((weak));
extern CategoryObject* __start_objc_catlist[] __attribute__((weak));
extern CategoryObject* __stop_objc_catlist[] __attribute__((weak));
extern ProtocolObject* __start_objc_protolist[] __attribute__((weak));
extern ProtocolObject* __stop_objc_protolist[] __attribute__((weak));
extern const char* __start_objc_selrefs[] __attribute__((weak));
extern const char* __stop_objc_selrefs[] __attribute__((weak));

// The classes of blocks, which the blocks' runtime leaves to us to fill.
extern void* _NSConcreteStackBlock[32];
extern void* _NSConcreteMallocBlock[32];
extern void* _NSConcreteGlobalBlock[32];
}

namespace navora::objc {

namespace {

// A range of pointers between two of the linker's symbols.
template <typename Element>
struct Section {
  Element* first;
  Element* last;

  Element* begin() const { return first; }
  Element* end() const { return last; }
};

// Never destroyed, because objects outlive the static ones of other files.
class SelectorNames {
 public:
  static SelectorNames& shared() {
    static auto& names = *new SelectorNames;
    return names;
  }

  const char* unique(const char* name) {
    const std::lock_guard lock(mutex_);
    return names_.insert(name).first->c_str();
  }

 private:
  std::mutex mutex_;
  // Its elements stay where they are.
  std::unordered_set<std::string> names_;
};

std::unordered_map<std::string_view, ClassObject*>& classesByName() {
  static auto& classes = *new std::unordered_map<std::string_view, ClassObject*>;
  return classes;
}

void addMethods(ClassData& data, const List<MethodDescription>* methods) {
  if (methods == nullptr) return;
  for (const MethodDescription& method : *methods) {
    data.methods[sel_registerName(method.name)] = method.implementation;
  }
}

// The runtime would never call them.
void refuseInitializers(const ClassObject& type) {
  for (const char* name : {"load", "initialize"}) {
    if (type.isa->data->methods.contains(sel_registerName(name))) {
      fail(std::string("+[") + type.description->name + " " + name + "] would not be called");
    }
  }
}

void addProtocols(ClassData& data, const ProtocolList* protocols) {
  if (protocols != nullptr) data.protocols.push_back(protocols);
}

// Moves the instance variables behind those of the superclass, which may have more of them than the
// compiler saw when it compiled the class.
void slideInstanceVariables(const ClassObject& type) {
  if (type.superclass == nullptr) return;
  ClassDescription& description = *type.description;
  const std::uint32_t inherited = type.superclass->description->instanceSize;
  if (description.instanceStart >= inherited) return;
  std::uint32_t alignment = alignof(void*);
  if (description.variables != nullptr) {
    for (const InstanceVariable& variable : *description.variables) {
      alignment = std::max(alignment, 1U << variable.alignmentLog2);
    }
  }
  const std::uint32_t distance =
      (inherited - description.instanceStart + alignment - 1) & ~(alignment - 1);
  if (description.variables != nullptr) {
    for (const InstanceVariable& variable : *description.variables) {
      if (variable.offset != nullptr) *variable.offset += distance;
    }
  }
  description.instanceStart += distance;
  description.instanceSize += distance;
}

IMP ownMethod(const ClassData& data, const char* name) {
  const auto found = data.methods.find(sel_registerName(name));
  return found == data.methods.end() ? nullptr : found->second;
}

void makeData(ClassObject& type) {
  // Owned by the class, for ever.
  type.data = new ClassData;
  addMethods(*type.data, type.description->methods);
  addProtocols(*type.data, type.description->protocols);
  type.data->construct = ownMethod(*type.data, ".cxx_construct");
  type.data->destruct = ownMethod(*type.data, ".cxx_destruct");
}

void realize(ClassObject& type) {
  if (type.data != nullptr) return;
  if (type.superclass != nullptr) realize(*type.superclass);
  makeData(type);
  makeData(*type.isa);
  slideInstanceVariables(type);
  if (!classesByName().emplace(type.description->name, &type).second) {
    fail(std::string("two classes are named ") + type.description->name);
  }
}

void attach(const CategoryObject& category) {
  addMethods(*category.owner->data, category.instanceMethods);
  addMethods(*category.owner->isa->data, category.classMethods);
  addProtocols(*category.owner->data, category.protocols);
}

bool listContains(const ProtocolList* list, const char* name) {
  return list != nullptr &&
         std::any_of(list->begin(), list->end(), [name](const ProtocolObject* protocol) {
           return std::strcmp(protocol->name, name) == 0 || listContains(protocol->protocols, name);
         });
}

// Selectors are compared by address, so every reference to a name gets the same one. Runs before
// the static initialisers of the program, which may send messages already.
__attribute__((constructor(101))) void start() {
  for (const char*& reference : Section{__start_objc_selrefs, __stop_objc_selrefs}) {
    reference = SelectorNames::shared().unique(reference);
  }
  for (ClassObject* type : Section{__start_objc_classlist, __stop_objc_classlist}) {
    realize(*type);
  }
  for (const CategoryObject* category : Section{__start_objc_catlist, __stop_objc_catlist}) {
    attach(*category);
  }
  for (const ClassObject* type : Section{__start_objc_classlist, __stop_objc_classlist}) {
    refuseInitializers(*type);
  }
  ClassObject* protocols = toClassObject(objc_getClass("Protocol"));
  protocols->data->isImmortal = true;
  for (ProtocolObject* protocol : Section{__start_objc_protolist, __stop_objc_protolist}) {
    protocol->isa = protocols;
  }
  for (void** blocks : {_NSConcreteStackBlock, _NSConcreteMallocBlock, _NSConcreteGlobalBlock}) {
    std::memcpy(static_cast<void*>(blocks), objc_getClass("NavoraBlock"), sizeof(ClassObject));
  }
}

[[noreturn]] void failUnrecognized(const ClassObject* type, SEL selector) {
  fail(std::string(isMetaclass(type) ? "+[" : "-[") + type->description->name + " " +
       sel_getName(selector) + "]: unrecognized selector");
}

IMP requireMethod(const ClassObject* type, SEL selector) {
  IMP method = findMethod(type, selector);
  if (method == nullptr) failUnrecognized(type, selector);
  return method;
}

}  // namespace

IMP findMethod(const ClassObject* type, SEL selector) {
  for (; type != nullptr; type = type->superclass) {
    const auto found = type->data->methods.find(selector);
    if (found != type->data->methods.end()) return found->second;
  }
  return nullptr;
}

bool isBlock(const void* object) {
  const void* type = classOf(object);
  return type == _NSConcreteStackBlock || type == _NSConcreteMallocBlock ||
         type == _NSConcreteGlobalBlock;
}

void makeImmortal(Class type) {
  toClassObject(type)->data->isImmortal = true;
}

std::string className(id object) {
  return object == nil ? "nil" : class_getName(object_getClass(object));
}

}  // namespace navora::objc

using namespace navora::objc;

extern "C" {

// Called by the entry points of message sends; the receiver is not nil.
IMP navora_objc_method(const void* receiver, SEL selector) {
  if (const char* name = deallocatedClassName(receiver)) {
    fail(std::string("-[") + name + " " + sel_getName(selector) +
         "]: message to a deallocated object");
  }
  return requireMethod(classOf(receiver), selector);
}

IMP navora_objc_super_method(const SuperReceiver* receiver, SEL selector) {
  return requireMethod(receiver->sender->superclass, selector);
}

SEL sel_registerName(const char* name) {
  return reinterpret_cast<SEL>(const_cast<char*>(SelectorNames::shared().unique(name)));
}

const char* sel_getName(SEL selector) {
  return reinterpret_cast<const char*>(selector);
}

Class object_getClass(id object) {
  return object == nil ? Nil : toClass(classOf(object));
}

const char* class_getName(Class type) {
  return type == Nil ? "nil" : toClassObject(type)->description->name;
}

Class class_getSuperclass(Class type) {
  return type == Nil ? Nil : toClass(toClassObject(type)->superclass);
}

std::size_t class_getInstanceSize(Class type) {
  return type == Nil ? 0 : toClassObject(type)->description->instanceSize;
}

BOOL class_respondsToSelector(Class type, SEL selector) {
  return type != Nil && selector != nullptr && findMethod(toClassObject(type), selector) != nullptr;
}

BOOL class_conformsToProtocol(Class type, Protocol* protocol) {
  if (type == Nil || protocol == nil) return NO;
  const char* name = protocol_getName(protocol);
  const auto& lists = toClassObject(type)->data->protocols;
  return std::any_of(lists.begin(), lists.end(),
                     [name](const ProtocolList* list) { return listContains(list, name); });
}

const char* protocol_getName(Protocol* protocol) {
  return reinterpret_cast<const ProtocolObject*>(protocol)->name;
}

Class objc_getClass(const char* name) {
  const auto found = classesByName().find(name);
  return found == classesByName().end() ? Nil : toClass(found->second);
}
}
