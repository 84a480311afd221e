#pragma once

#include <memory>

#include "hosts/linux/keyboard/GlobalShortcutsPortal.h"
#include "hosts/linux/keyboard/KeyGrab.h"
#include "platform/HotKeys.h"

namespace navora {

// Registers hot keys with a key grab on X11 and with the desktop's portal on Wayland. The portal
// asks the user, so a registration succeeds there before it is known whether the combination will
// work.
class LinuxHotKeys final : public HotKeys {
 public:
  // The status on a desktop that has neither.
  static constexpr Status unsupported = -1;

  LinuxHotKeys();
  ~LinuxHotKeys() override;
  LinuxHotKeys(const LinuxHotKeys&) = delete;
  LinuxHotKeys& operator=(const LinuxHotKeys&) = delete;

  // The handler must be installed before a hot key is registered; removing it unregisters the hot
  // key.
  Status installEventHandler(std::function<void()> onPressed) override;
  void removeEventHandler() override;
  Status registerHotKey(const HotKey& hotKey) override;
  void unregisterHotKey() override;
  std::unique_ptr<ObserverToken> addLocalKeyDownMonitor(
      std::function<bool(const KeyEvent&)> monitor) override;

 private:
  std::function<void()> onPressed_;
  std::unique_ptr<KeyGrab> grab_;
  std::unique_ptr<GlobalShortcutsPortal> portal_;
};

}  // namespace navora
