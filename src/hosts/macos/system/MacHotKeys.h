#pragma once

#import <Carbon/Carbon.h>

#include "platform/HotKeys.h"

namespace navora {

// Registers the system-wide hot key with Carbon and watches the application's own key presses with
// a local event monitor. Holds one handler and one hot key at a time.
class MacHotKeys final : public HotKeys {
 public:
  MacHotKeys() = default;
  ~MacHotKeys() override;
  MacHotKeys(const MacHotKeys&) = delete;
  MacHotKeys& operator=(const MacHotKeys&) = delete;

  Status installEventHandler(std::function<void()> onPressed) override;
  void removeEventHandler() override;
  Status registerHotKey(const HotKey& hotKey) override;
  void unregisterHotKey() override;
  std::unique_ptr<ObserverToken> addLocalKeyDownMonitor(
      std::function<bool(const KeyEvent&)> monitor) override;

 private:
  std::function<void()> onPressed_;
  EventHandlerRef _Nullable handler_ = nullptr;
  EventHotKeyRef _Nullable hotKey_ = nullptr;
};

}  // namespace navora
