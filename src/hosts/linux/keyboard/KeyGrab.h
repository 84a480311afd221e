#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <gdk/gdk.h>

#include "platform/HotKeys.h"

namespace navora {

// A passive grab of one key combination on the X server's root window (XGrabKey), in every state of
// Caps Lock and Num Lock. The destructor releases it.
class KeyGrab {
 public:
  // Returns whether the display is an X server; Wayland has no grabs.
  static bool isSupported();

  // Calls `onPressed` once for every press, however long the keys are held.
  KeyGrab(const HotKey& hotKey, std::function<void()> onPressed);
  ~KeyGrab();
  KeyGrab(const KeyGrab&) = delete;
  KeyGrab& operator=(const KeyGrab&) = delete;

  // Returns 0, or the X error code of a failed grab; nothing is grabbed then.
  int status() const { return status_; }

 private:
  struct Combination {
    int keyCode = 0;
    unsigned modifiers = 0;
  };

  static GdkFilterReturn onEvent(GdkXEvent* event, GdkEvent*, gpointer self);
  static void onKeymapChanged(GdkKeymap*, gpointer self);
  std::vector<Combination> combinations() const;
  int grab();
  void ungrab();
  bool matches(int keyCode, unsigned state) const;

  const HotKey hotKey_;
  const std::function<void()> onPressed_;
  std::vector<Combination> grabbed_;
  int status_ = 0;
  // The key of the last reported press, until it is released.
  std::optional<unsigned> heldKeyCode_;
  gulong keymapHandler_ = 0;
};

}  // namespace navora
