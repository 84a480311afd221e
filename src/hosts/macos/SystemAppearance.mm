#include "hosts/macos/SystemAppearance.h"

#import <AppKit/AppKit.h>

@interface NavoraAppearanceObserver : NSObject {
 @public
  std::function<void()> callback;
}
@end

@implementation NavoraAppearanceObserver

// Registered for one key path of one object.
- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context {
  if (callback) callback();
}

@end

namespace navora {

namespace {

// As long as nobody sets the application's own appearance, this one is the desktop's.
NSString* const appearanceKeyPath = @"effectiveAppearance";

class AppearanceObservation final : public ObserverToken {
 public:
  explicit AppearanceObservation(std::function<void()> callback)
      : application_([NSApplication sharedApplication]),
        observer_([[NavoraAppearanceObserver alloc] init]) {
    observer_->callback = std::move(callback);
    [application_ addObserver:observer_ forKeyPath:appearanceKeyPath options:0 context:nullptr];
  }
  ~AppearanceObservation() override {
    [application_ removeObserver:observer_ forKeyPath:appearanceKeyPath context:nullptr];
    observer_->callback = nullptr;
  }
  AppearanceObservation(const AppearanceObservation&) = delete;
  AppearanceObservation& operator=(const AppearanceObservation&) = delete;

 private:
  NSApplication* application_;
  NavoraAppearanceObserver* observer_;
};

}  // namespace

bool systemIsDark() {
  NSAppearance* appearance = [NSApplication sharedApplication].effectiveAppearance;
  NSAppearanceName match = [appearance
      bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
  return [match isEqualToString:NSAppearanceNameDarkAqua];
}

std::unique_ptr<ObserverToken> observeSystemAppearance(std::function<void()> callback) {
  return std::make_unique<AppearanceObservation>(std::move(callback));
}

}  // namespace navora
