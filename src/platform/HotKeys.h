#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/KeyEvent.h"
#include "platform/ObserverToken.h"

namespace navora {

// A combination that is caught system-wide.
struct HotKey {
  std::uint16_t keyCode = 0;
  // The Carbon bits (256 Command, 512 Shift); a host whose desktop has another main modifier takes
  // that one for Command.
  std::uint32_t carbonModifiers = 0;
  std::uint32_t signature = 0;
  std::uint32_t identifier = 0;

  bool operator==(const HotKey&) const = default;
};

// Keys that are caught before they reach a view. Statuses are the platform's own numbers; 0 is
// success.
class HotKeys {
 public:
  using Status = int;

  virtual ~HotKeys() = default;

  // `onPressed` may be called outside of the normal flow of events: it must do no more than
  // schedule.
  virtual Status installEventHandler(std::function<void()> onPressed) = 0;
  virtual void removeEventHandler() = 0;
  // Fails if another application has taken the combination.
  virtual Status registerHotKey(const HotKey& hotKey) = 0;
  virtual void unregisterHotKey() = 0;

  // Sees every key press in the application's own windows before they do; true swallows it. As in a
  // registration, a desktop's other main modifier comes as Command: Control on Linux, whose Super
  // comes as Control.
  virtual std::unique_ptr<ObserverToken> addLocalKeyDownMonitor(
      std::function<bool(const KeyEvent&)> monitor) = 0;
};

}  // namespace navora
