#pragma once

#include <cstdint>

namespace navora {

// A key press in macOS terms: the virtual key code, which identifies the physical key rather than
// the character it types, and the device-independent modifier flags. Hosts translate their events;
// on a desktop whose main modifier is Control, that key sets the Control bit.
struct KeyEvent {
  static constexpr std::uint16_t returnKey = 36;
  static constexpr std::uint16_t spaceKey = 49;
  static constexpr std::uint16_t escapeKey = 53;
  static constexpr std::uint16_t keypadEnterKey = 76;
  // Any key without a constant here.
  static constexpr std::uint16_t otherKey = 0xFFFF;

  static constexpr std::uint32_t capsLock = 0x10000;
  static constexpr std::uint32_t shift = 0x20000;
  static constexpr std::uint32_t control = 0x40000;
  static constexpr std::uint32_t option = 0x80000;
  static constexpr std::uint32_t command = 0x100000;
  static constexpr std::uint32_t numericPad = 0x200000;
  static constexpr std::uint32_t function = 0x800000;

  std::uint16_t keyCode = otherKey;
  std::uint32_t modifiers = 0;

  bool operator==(const KeyEvent&) const = default;
};

}  // namespace navora
