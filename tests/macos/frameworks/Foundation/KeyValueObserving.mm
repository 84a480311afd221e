// Key-value observing as far as the host uses it: classes announce changes themselves
// (Key-Value Observing Programming Guide, "Manual Change Notification"), and a key path is one key.

#include <algorithm>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#import <Foundation/Foundation.h>

#include "frameworks/Foundation/Strings.h"
#include "runtime/Runtime.h"

using navora::doubles::utf8Of;

namespace {

// The observer is not retained: documentation of -addObserver:forKeyPath:options:context:.
struct Observation {
  NSObject* __unsafe_unretained observer;
  std::string key;
  void* context;
};

class Observations {
 public:
  static Observations& shared() {
    static auto& observations = *[] {
      navora::objc::beforeDeallocation([](id object) { shared().requireNone(object); });
      return new Observations;
    }();
    return observations;
  }

  void add(const void* object, const Observation& observation) {
    const std::lock_guard lock(mutex_);
    observations_[object].push_back(observation);
  }

  bool remove(const void* object, const Observation& wanted) {
    const std::lock_guard lock(mutex_);
    const auto found = observations_.find(object);
    if (found == observations_.end()) return false;
    auto& all = found->second;
    const auto position = std::find_if(all.begin(), all.end(), [&](const Observation& other) {
      return other.observer == wanted.observer && other.key == wanted.key &&
             other.context == wanted.context;
    });
    if (position == all.end()) return false;
    all.erase(position);
    if (all.empty()) observations_.erase(found);
    return true;
  }

  std::vector<Observation> of(const void* object) {
    const std::lock_guard lock(mutex_);
    const auto found = observations_.find(object);
    return found == observations_.end() ? std::vector<Observation>() : found->second;
  }

 private:
  // Both ends must remove their observations first: Key-Value Observing Programming Guide,
  // "Removing an Object as an Observer".
  void requireNone(id object) {
    const std::lock_guard lock(mutex_);
    const void* address = (__bridge const void*)object;
    for (const auto& [observed, observations] : observations_) {
      for (const Observation& observation : observations) {
        if (observed == address || (__bridge const void*)observation.observer == address) {
          navora::objc::fail(navora::objc::className(object) +
                             ": deallocated while it takes part in the observation of " +
                             observation.key);
        }
      }
    }
  }

  std::mutex mutex_;
  std::unordered_map<const void*, std::vector<Observation>> observations_;
};

}  // namespace

// The root class, which belongs to the runtime, leaves these methods out.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSObject (NavoraKeyValueObserving)

- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(nullable void*)context {
  // A misspelt key would be observed in vain.
  if (![self respondsToSelector:NSSelectorFromString(keyPath)]) {
    navora::objc::fail(navora::objc::className(self) + " has no key " + utf8Of(keyPath));
  }
  Observations::shared().add((__bridge const void*)self, {observer, utf8Of(keyPath), context});
}

- (void)removeObserver:(NSObject*)observer
            forKeyPath:(NSString*)keyPath
               context:(nullable void*)context {
  if (!Observations::shared().remove((__bridge const void*)self,
                                     {observer, utf8Of(keyPath), context})) {
    navora::objc::raise("NSRangeException", navora::objc::className(observer) +
                                                " is not registered as an observer of " +
                                                utf8Of(keyPath));
  }
}

- (void)willChangeValueForKey:(NSString*)key {
}

// Notifies on the thread of the change.
- (void)didChangeValueForKey:(NSString*)key {
  const std::string name = utf8Of(key);
  for (const Observation& observation : Observations::shared().of((__bridge const void*)self)) {
    if (observation.key != name) continue;
    [observation.observer observeValueForKeyPath:key
                                        ofObject:self
                                          change:[NSDictionary dictionary]
                                         context:observation.context];
  }
}

- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context {
  navora::objc::raise("NSInternalInconsistencyException",
                      navora::objc::className(self) + " does not handle observed changes");
}

@end

#pragma clang diagnostic pop
