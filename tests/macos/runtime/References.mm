// Instances: their memory, reference counts, weak references and autorelease pools.

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include <Block.h>
#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>

#include "runtime/Classes.h"
#include "runtime/Runtime.h"

extern "C" {
id objc_retain(id object);
void objc_release(id object);
id objc_autorelease(id object);
}

namespace navora::objc {

namespace {

// Precedes every instance in memory.
struct alignas(16) Header {
  std::atomic<std::uint32_t> references = 1;
  std::atomic<bool> isDeallocating = false;
  bool livesForever = false;
  std::size_t size = 0;
  // Set when the instance was deallocated.
  ClassObject* formerClass = nullptr;
};

Header& headerOf(const void* object) {
  return *(static_cast<Header*>(const_cast<void*>(object)) - 1);
}

// The class of what was deallocated. Its memory is kept for a while, so that a message to it is
// noticed and can be reported with the name of its former class.
ClassObject deallocatedClass = {};
constexpr std::size_t keptBytes = 16UL << 20;

// Deallocated memory must not lead the leak checker to objects that only it refers to, and must not
// be read by anyone who still has a pointer to an instance variable.
void eraseBody(void* object, std::size_t size) {
  char* body = static_cast<char*>(object) + sizeof(ClassObject*);
  const std::size_t bodySize = size - sizeof(ClassObject*);
  std::memset(body, 0x5a, bodySize);
  __asan_poison_memory_region(body, bodySize);
}

class Instances {
 public:
  static Instances& shared() {
    static auto& instances = *new Instances;
    return instances;
  }

  void add(const void* object) {
    const std::lock_guard lock(mutex_);
    living_.emplace(disguise(object), ++lastNumber_);
  }

  void bury(void* object) {
    const std::lock_guard lock(mutex_);
    living_.erase(disguise(object));
    dead_.push_back(object);
    deadBytes_ += headerOf(object).size;
    while (deadBytes_ > keptBytes) {
      void* oldest = dead_.front();
      dead_.pop_front();
      const std::size_t size = headerOf(oldest).size;
      deadBytes_ -= size;
      __asan_unpoison_memory_region(oldest, size);
      std::free(&headerOf(oldest));
    }
  }

  std::size_t lastNumber() {
    const std::lock_guard lock(mutex_);
    return lastNumber_;
  }

  std::vector<std::string> namesSince(std::size_t mark) {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    for (const auto& [disguised, number] : living_) {
      const void* object = disguise(disguised);
      if (number > mark && !headerOf(object).livesForever) {
        names.emplace_back(classOf(object)->description->name);
      }
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  // The leak checker must not find instances through this list.
  static std::uintptr_t disguise(const void* object) {
    return ~reinterpret_cast<std::uintptr_t>(object);
  }
  static const void* disguise(std::uintptr_t disguised) {
    return reinterpret_cast<const void*>(~disguised);
  }

  std::mutex mutex_;
  std::unordered_map<std::uintptr_t, std::size_t> living_;
  std::size_t lastNumber_ = 0;
  std::deque<void*> dead_;
  std::size_t deadBytes_ = 0;
};

// The variables that refer to an object weakly. One lock for all: what is deallocated meanwhile
// must not be freed while another thread reads its reference count.
struct WeakReferences {
  static WeakReferences& shared() {
    static auto& references = *new WeakReferences;
    return references;
  }

  void remove(id* location, id object) {
    const auto found = locations.find(object);
    if (found == locations.end()) return;
    std::erase(found->second, location);
    if (found->second.empty()) locations.erase(found);
  }

  std::mutex mutex;
  std::unordered_map<const void*, std::vector<id*>> locations;
};

// Whether reference counts do not apply to the object.
bool isUncounted(const void* object) {
  if (const char* name = deallocatedClassName(object)) {
    fail(std::string(name) + ": use of a deallocated object");
  }
  return isClass(object) || classOf(object)->data->isImmortal;
}

std::vector<std::function<void(id)>>& deallocationHooks() {
  static auto& hooks = *new std::vector<std::function<void(id)>>;
  return hooks;
}

std::vector<std::function<void()>>& testEndHooks() {
  static auto& hooks = *new std::vector<std::function<void()>>;
  return hooks;
}

std::vector<std::string>& complaints() {
  static auto& list = *new std::vector<std::string>;
  return list;
}

// Sends -dealloc, which ends in the root class's.
void deallocate(id object) {
  headerOf(object).isDeallocating = true;
  for (const auto& hook : deallocationHooks()) {
    hook(object);
  }
  static SEL const selector = sel_registerName("dealloc");
  reinterpret_cast<void (*)(id, SEL)>(findMethod(classOf(object), selector))(object, selector);
}

// What was autoreleased on one thread and not yet released. A pool is an index into it.
struct AutoreleaseStack {
  ~AutoreleaseStack() { popTo(0); }

  // Releasing an object may autorelease others, which belong to the same pool.
  void popTo(std::size_t index) {
    while (objects.size() > index) {
      id object = objects.back();
      objects.pop_back();
      objc_release(object);
    }
  }

  std::vector<id> objects;
  std::size_t pools = 0;
};

AutoreleaseStack& autoreleaseStack() {
  thread_local AutoreleaseStack stack;
  return stack;
}

// The associated objects of every object.
struct Association {
  id value;
  objc_AssociationPolicy policy;
};
struct Associations {
  static Associations& shared() {
    static auto& associations = *new Associations;
    return associations;
  }

  std::mutex mutex;
  std::unordered_map<const void*, std::map<const void*, Association>> values;
};

bool retains(objc_AssociationPolicy policy) {
  return policy != OBJC_ASSOCIATION_ASSIGN;
}

id keptForAssociation(id value, objc_AssociationPolicy policy) {
  if (value == nil || !retains(policy)) return value;
  if ((policy & OBJC_ASSOCIATION_COPY_NONATOMIC) != OBJC_ASSOCIATION_COPY_NONATOMIC) {
    return objc_retain(value);
  }
  return [value copy];
}

void removeAssociations(id object) {
  std::map<const void*, Association> values;
  {
    auto& associations = Associations::shared();
    const std::lock_guard lock(associations.mutex);
    if (auto node = associations.values.extract(object)) values = std::move(node.mapped());
  }
  for (const auto& [key, association] : values) {
    if (retains(association.policy)) objc_release(association.value);
  }
}

void clearWeakReferences(id object) {
  auto& weak = WeakReferences::shared();
  const std::lock_guard lock(weak.mutex);
  if (auto node = weak.locations.extract(object)) {
    for (id* location : node.mapped()) {
      *location = nil;
    }
  }
}

// Called with the lock of the weak references.
void storeWeakly(id* location, id object) {
  *location = object;
  if (object == nil) return;
  if (isBlock(object)) fail("a weak reference to a block");
  if (isUncounted(object)) return;
  if (headerOf(object).isDeallocating) {
    fail("a weak reference to " + className(object) + ", which is being deallocated");
  }
  WeakReferences::shared().locations[object].push_back(location);
}

// Called with the lock of the weak references. Returns the object with one reference more.
id retainedFromWeak(id object) {
  if (object == nil) return nil;
  if (isUncounted(object)) return object;
  auto& references = headerOf(object).references;
  for (std::uint32_t count = references; count > 0;) {
    if (headerOf(object).isDeallocating) return nil;
    if (references.compare_exchange_weak(count, count + 1)) return object;
  }
  return nil;
}

void construct(const ClassObject* type, id object) {
  if (type->superclass != nullptr) construct(type->superclass, object);
  static SEL const selector = sel_registerName(".cxx_construct");
  if (IMP function = type->data->construct) {
    reinterpret_cast<id (*)(id, SEL)>(function)(object, selector);
  }
}

void destruct(const ClassObject* type, id object) {
  static SEL const selector = sel_registerName(".cxx_destruct");
  for (; type != nullptr; type = type->superclass) {
    if (IMP function = type->data->destruct) {
      reinterpret_cast<void (*)(id, SEL)>(function)(object, selector);
    }
  }
}

}  // namespace

void fail(const std::string& message) {
  std::fprintf(stderr, "Objective-C: %s\n", message.c_str());
  __sanitizer_print_stack_trace();
  std::abort();
}

void raise(const std::string& exception, const std::string& reason) {
  fail(exception + ": " + reason);
}

id keepForever(id object) {
  if (object != nil && !isBlock(object) && !isUncounted(object)) {
    headerOf(object).livesForever = true;
  }
  return object;
}

std::size_t instanceMark() {
  return Instances::shared().lastNumber();
}

std::vector<std::string> instancesSince(std::size_t mark) {
  return Instances::shared().namesSince(mark);
}

void whenTestEnds(std::function<void()> reset) {
  testEndHooks().push_back(std::move(reset));
}

void resetSharedInstances() {
  // By index, because a reset may make another shared instance.
  for (std::size_t index = testEndHooks().size(); index > 0; --index) {
    testEndHooks()[index - 1]();
  }
}

void complain(const std::string& problem) {
  complaints().push_back(problem);
}

std::vector<std::string> takeComplaints() {
  return std::exchange(complaints(), {});
}

void beforeDeallocation(std::function<void(id)> hook) {
  deallocationHooks().push_back(std::move(hook));
}

const char* deallocatedClassName(const void* object) {
  return classOf(object) == &deallocatedClass ? headerOf(object).formerClass->description->name
                                              : nullptr;
}

}  // namespace navora::objc

using namespace navora::objc;

extern "C" {

id class_createInstance(Class type, std::size_t extraBytes) {
  if (type == Nil) return nil;
  const std::size_t size = class_getInstanceSize(type) + extraBytes;
  void* memory = std::calloc(1, sizeof(Header) + size);
  auto* header = new (memory) Header;
  header->size = size;
  id object = reinterpret_cast<id>(header + 1);
  *reinterpret_cast<Class*>(header + 1) = type;
  construct(toClassObject(type), object);
  Instances::shared().add(object);
  return object;
}

// The end of every deallocation. The order: instance variables, associated objects, weak
// references. Weak references read nil from the moment at which deallocation begins.
void navora_objc_dispose(id object) {
  destruct(classOf(object), object);
  removeAssociations(object);
  clearWeakReferences(object);
  Header& header = headerOf(object);
  if (header.references != 0) fail(className(object) + ": retained while it was deallocated");
  header.formerClass = classOf(object);
  *reinterpret_cast<ClassObject**>(object) = &deallocatedClass;
  eraseBody(reinterpret_cast<void*>(object), header.size);
  Instances::shared().bury(reinterpret_cast<void*>(object));
}

id objc_retain(id object) {
  if (object == nil) return nil;
  // A block on the stack stays there; objc_retainBlock() copies.
  if (isBlock(object)) return isHeapBlock(object) ? static_cast<id>(_Block_copy(object)) : object;
  if (!isUncounted(object)) ++headerOf(object).references;
  return object;
}

void objc_release(id object) {
  if (object == nil) return;
  if (isBlock(object)) {
    if (isHeapBlock(object)) _Block_release(object);
    return;
  }
  if (const char* name = deallocatedClassName(object)) {
    fail(std::string(name) + ": released once too often");
  }
  if (isUncounted(object)) return;
  Header& header = headerOf(object);
  const std::uint32_t before = header.references--;
  if (before == 0) fail(className(object) + ": released once too often");
  if (before == 1 && !header.isDeallocating) deallocate(object);
}

id objc_autorelease(id object) {
  if (object != nil) autoreleaseStack().objects.push_back(object);
  return object;
}

id objc_autoreleaseReturnValue(id object) {
  return objc_autorelease(object);
}

id objc_retainAutorelease(id object) {
  return objc_autorelease(objc_retain(object));
}

id objc_retainAutoreleaseReturnValue(id object) {
  return objc_autorelease(objc_retain(object));
}

id objc_retainAutoreleasedReturnValue(id object) {
  return objc_retain(object);
}

id objc_unsafeClaimAutoreleasedReturnValue(id object) {
  return object;
}

id objc_retainBlock(id block) {
  return static_cast<id>(_Block_copy(block));
}

void objc_storeStrong(id* location, id object) {
  id former = *location;
  if (former == object) return;
  objc_retain(object);
  *location = object;
  objc_release(former);
}

id objc_initWeak(id* location, id object) {
  const std::lock_guard lock(WeakReferences::shared().mutex);
  storeWeakly(location, object);
  return object;
}

id objc_storeWeak(id* location, id object) {
  auto& weak = WeakReferences::shared();
  const std::lock_guard lock(weak.mutex);
  weak.remove(location, *location);
  storeWeakly(location, object);
  return object;
}

id objc_loadWeakRetained(id* location) {
  const std::lock_guard lock(WeakReferences::shared().mutex);
  return retainedFromWeak(*location);
}

id objc_loadWeak(id* location) {
  return objc_autorelease(objc_loadWeakRetained(location));
}

void objc_destroyWeak(id* location) {
  auto& weak = WeakReferences::shared();
  const std::lock_guard lock(weak.mutex);
  weak.remove(location, *location);
}

void objc_copyWeak(id* to, id* from) {
  id object = objc_loadWeakRetained(from);
  objc_initWeak(to, object);
  objc_release(object);
}

void objc_moveWeak(id* to, id* from) {
  objc_copyWeak(to, from);
  objc_destroyWeak(from);
}

void* objc_autoreleasePoolPush() {
  AutoreleaseStack& stack = autoreleaseStack();
  ++stack.pools;
  // Never null, so that a pool can be told from no pool.
  return reinterpret_cast<void*>(stack.objects.size() + 1);
}

void objc_autoreleasePoolPop(void* pool) {
  AutoreleaseStack& stack = autoreleaseStack();
  const auto index = reinterpret_cast<std::uintptr_t>(pool) - 1;
  if (stack.pools == 0 || index > stack.objects.size()) fail("an autorelease pool ended twice");
  stack.popTo(index);
  --stack.pools;
}

void objc_setAssociatedObject(id object, const void* key, id value, objc_AssociationPolicy policy) {
  value = keptForAssociation(value, policy);
  Association former = {nil, OBJC_ASSOCIATION_ASSIGN};
  {
    auto& associations = Associations::shared();
    const std::lock_guard lock(associations.mutex);
    auto& values = associations.values[object];
    if (const auto found = values.find(key); found != values.end()) former = found->second;
    values.erase(key);
    if (value != nil) values.emplace(key, Association{value, policy});
  }
  if (retains(former.policy)) objc_release(former.value);
}

id objc_getAssociatedObject(id object, const void* key) {
  auto& associations = Associations::shared();
  const std::lock_guard lock(associations.mutex);
  const auto values = associations.values.find(object);
  if (values == associations.values.end()) return nil;
  const auto found = values->second.find(key);
  return found == values->second.end() ? nil : objc_retainAutorelease(found->second.value);
}
}
