#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/KeyEvent.h"
#include "platform/ObserverToken.h"

namespace navora {

// A key combination registered system-wide.
struct HotKey {
  // Modifier bits of Carbon's RegisterEventHotKey.
  static constexpr std::uint32_t carbonCommand = 0x100;
  static constexpr std::uint32_t carbonShift = 0x200;
  static constexpr std::uint32_t carbonOption = 0x800;

  // A key code as in KeyEvent.
  std::uint16_t keyCode = 0;
  // A host whose desktop has another main modifier uses that one for carbonCommand.
  std::uint32_t carbonModifiers = 0;
  std::uint32_t signature = 0;
  std::uint32_t identifier = 0;

  bool operator==(const HotKey&) const = default;
};

// Registers the system-wide hot key, and intercepts keys before the application's own views see
// them. A Status is the platform's own error number; 0 means success.
class HotKeys {
 public:
  using Status = int;

  virtual ~HotKeys() = default;

  // Installs the handler of the registered hot key. `onPressed` may be called outside the main
  // loop's event dispatch, so it must only schedule work.
  virtual Status installEventHandler(std::function<void()> onPressed) = 0;
  virtual void removeEventHandler() = 0;
  // Fails if another application has registered the combination.
  virtual Status registerHotKey(const HotKey& hotKey) = 0;
  virtual void unregisterHotKey() = 0;

  // Calls `monitor` for every key press in the application's own windows before they handle it,
  // until the token is destroyed; `monitor` returns true to consume the event. As in a
  // registration, the desktop's main modifier is reported as Command: on Linux Control as Command,
  // and Super as Control.
  virtual std::unique_ptr<ObserverToken> addLocalKeyDownMonitor(
      std::function<bool(const KeyEvent&)> monitor) = 0;
};

}  // namespace navora
