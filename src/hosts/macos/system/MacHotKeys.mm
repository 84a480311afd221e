#include "hosts/macos/system/MacHotKeys.h"

#include <utility>

#import <AppKit/AppKit.h>

#include "hosts/macos/system/AppKitConversions.h"

namespace navora {

namespace {

// Only one hot key is ever registered, so the event's identifier is not read.
OSStatus hotKeyPressed(EventHandlerCallRef, EventRef, void* onPressed) {
  (*static_cast<const std::function<void()>*>(onPressed))();
  return noErr;
}

class LocalMonitor final : public ObserverToken {
 public:
  explicit LocalMonitor(std::function<bool(const KeyEvent&)> swallows)
      : monitor_([NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                                       handler:^NSEvent* _Nullable(NSEvent* event) {
                                                         return swallows(toKeyEvent(event)) ? nil
                                                                                            : event;
                                                       }]) {}
  ~LocalMonitor() override {
    if (monitor_ != nil) [NSEvent removeMonitor:monitor_];
  }
  LocalMonitor(const LocalMonitor&) = delete;
  LocalMonitor& operator=(const LocalMonitor&) = delete;

 private:
  id _Nullable monitor_;
};

}  // namespace

MacHotKeys::~MacHotKeys() {
  unregisterHotKey();
  removeEventHandler();
}

HotKeys::Status MacHotKeys::installEventHandler(std::function<void()> onPressed) {
  removeEventHandler();
  onPressed_ = std::move(onPressed);
  const EventTypeSpec pressed{.eventClass = kEventClassKeyboard, .eventKind = kEventHotKeyPressed};
  return InstallEventHandler(GetApplicationEventTarget(), hotKeyPressed, 1, &pressed, &onPressed_,
                             &handler_);
}

void MacHotKeys::removeEventHandler() {
  if (handler_ != nullptr) RemoveEventHandler(handler_);
  handler_ = nullptr;
  onPressed_ = nullptr;
}

HotKeys::Status MacHotKeys::registerHotKey(const HotKey& hotKey) {
  unregisterHotKey();
  const EventHotKeyID identifier{.signature = hotKey.signature, .id = hotKey.identifier};
  return RegisterEventHotKey(hotKey.keyCode, hotKey.carbonModifiers, identifier,
                             GetApplicationEventTarget(), 0, &hotKey_);
}

void MacHotKeys::unregisterHotKey() {
  if (hotKey_ != nullptr) UnregisterEventHotKey(hotKey_);
  hotKey_ = nullptr;
}

std::unique_ptr<ObserverToken> MacHotKeys::addLocalKeyDownMonitor(
    std::function<bool(const KeyEvent&)> monitor) {
  return std::make_unique<LocalMonitor>(std::move(monitor));
}

}  // namespace navora
