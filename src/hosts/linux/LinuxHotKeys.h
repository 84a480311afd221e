#pragma once

#include <memory>

#include "hosts/linux/KeyGrab.h"
#include "platform/HotKeys.h"

namespace navora {

// Through a key grab of the X server.
class LinuxHotKeys final : public HotKeys {
 public:
  // What a registration answers on a display that knows no grabs.
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
};

}  // namespace navora
