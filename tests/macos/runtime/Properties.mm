// What the compiler calls from the accessors that it writes.

#include <cstddef>
#include <cstring>
#include <mutex>

#include "runtime/Runtime.h"

extern "C" {
id objc_retain(id object);
void objc_release(id object);
id objc_autorelease(id object);
id objc_alloc(Class type);
void objc_msgSend();
}

namespace {

// Atomic accessors exclude each other.
std::mutex& accessorMutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

id* variableAt(id object, std::ptrdiff_t offset) {
  return reinterpret_cast<id*>(reinterpret_cast<char*>(object) + offset);
}

void store(id object, std::ptrdiff_t offset, id value) {
  id former = nil;
  {
    const std::lock_guard lock(accessorMutex());
    former = *variableAt(object, offset);
    *variableAt(object, offset) = value;
  }
  objc_release(former);
}

}  // namespace

extern "C" {

id objc_getProperty(id object, SEL, std::ptrdiff_t offset, BOOL) {
  const std::lock_guard lock(accessorMutex());
  return objc_autorelease(objc_retain(*variableAt(object, offset)));
}

void objc_setProperty_atomic(id object, SEL, id value, std::ptrdiff_t offset) {
  store(object, offset, objc_retain(value));
}

void objc_setProperty_nonatomic(id object, SEL, id value, std::ptrdiff_t offset) {
  store(object, offset, objc_retain(value));
}

void objc_setProperty_atomic_copy(id object, SEL, id value, std::ptrdiff_t offset) {
  store(object, offset, [value copy]);
}

void objc_setProperty_nonatomic_copy(id object, SEL, id value, std::ptrdiff_t offset) {
  store(object, offset, [value copy]);
}

void objc_copyStruct(void* destination, const void* source, std::ptrdiff_t size, BOOL, BOOL) {
  const std::lock_guard lock(accessorMutex());
  std::memcpy(destination, source, static_cast<std::size_t>(size));
}

void objc_copyCppObjectAtomic(void* destination, const void* source,
                              void (*copy)(void*, const void*)) {
  const std::lock_guard lock(accessorMutex());
  copy(destination, source);
}

void objc_enumerationMutation(id collection) {
  navora::objc::fail(navora::objc::className(collection) + ": changed while it was enumerated");
}

// The compiler calls these two wherever a program sends the messages themselves.
id objc_alloc(Class type) {
  static SEL const selector = sel_registerName("alloc");
  return reinterpret_cast<id (*)(Class, SEL)>(objc_msgSend)(type, selector);
}

id objc_alloc_init(Class type) {
  static SEL const selector = sel_registerName("init");
  return reinterpret_cast<id (*)(id, SEL)>(objc_msgSend)(objc_alloc(type), selector);
}
}
