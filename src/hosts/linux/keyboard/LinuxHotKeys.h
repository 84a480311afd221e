#pragma once

#include <memory>

#include "hosts/linux/keyboard/GlobalShortcutsPortal.h"
#include "hosts/linux/keyboard/KeyGrab.h"
#include "platform/HotKeys.h"

namespace navora {

// Through a key grab of the X server or, where there is none, the desktop's portal. The portal asks
// the user, so a registration there succeeds before it is known whether the combination will work.
class LinuxHotKeys final : public HotKeys {
 public:
  // The status on a desktop with neither.
  static constexpr Status unsupported = -1;

  LinuxHotKeys();
  ~LinuxHotKeys() override;
  LinuxHotKeys(const LinuxHotKeys&) = delete;
  LinuxHotKeys& operator=(const LinuxHotKeys&) = delete;

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
