#pragma once

#include <vector>

#import <Carbon/Carbon.h>

namespace navora::doubles {

// Documentation of RegisterEventHotKey: the combination is registered already.
constexpr OSStatus eventHotKeyExistsErr = -9878;

struct RegisteredHotKey {
  UInt32 keyCode = 0;
  UInt32 modifiers = 0;
  EventHotKeyID identifier = {};
};

// The hot keys that the application has registered.
std::vector<RegisteredHotKey> registeredHotKeys();

// Acts as a press of the combination, whichever application has the keyboard. Returns whether a
// handler took it.
bool pressHotKey(UInt32 keyCode, UInt32 modifiers);

// Lets the next calls fail with this status.
void failNextHotKeyCalls(OSStatus status);

}  // namespace navora::doubles
