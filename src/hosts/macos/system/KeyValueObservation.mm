#include "hosts/macos/system/KeyValueObservation.h"

#include <utility>

// Observes one key path of one object. The system notifies it on the thread of the change;
// `callback` is accessed on the main thread only.
@interface NavoraKeyValueObserver : NSObject {
 @public
  std::function<void()> callback;
}
@end

@implementation NavoraKeyValueObserver

- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context {
  NavoraKeyValueObserver* __weak weakSelf = self;
  dispatch_async(dispatch_get_main_queue(), ^{
    NavoraKeyValueObserver* observer = weakSelf;
    if (observer == nil) return;
    // Copied, because the callback may destroy the observation.
    const std::function<void()> current = observer->callback;
    if (current) current();
  });
}

@end

namespace navora {

namespace {

class KeyValueObservation final : public ObserverToken {
 public:
  KeyValueObservation(NSObject* object, NSString* keyPath, std::function<void()> callback)
      : object_(object), keyPath_(keyPath), observer_([[NavoraKeyValueObserver alloc] init]) {
    observer_->callback = std::move(callback);
    [object_ addObserver:observer_
              forKeyPath:keyPath_
                 options:NSKeyValueObservingOptionNew
                 context:nullptr];
  }
  ~KeyValueObservation() override {
    [object_ removeObserver:observer_ forKeyPath:keyPath_ context:nullptr];
    observer_->callback = nullptr;
  }
  KeyValueObservation(const KeyValueObservation&) = delete;
  KeyValueObservation& operator=(const KeyValueObservation&) = delete;

 private:
  NSObject* object_;
  NSString* keyPath_;
  NavoraKeyValueObserver* observer_;
};

}  // namespace

std::unique_ptr<ObserverToken> observeKeyPath(NSObject* _Nonnull object, NSString* _Nonnull keyPath,
                                              std::function<void()> callback) {
  return std::make_unique<KeyValueObservation>(object, keyPath, std::move(callback));
}

}  // namespace navora
