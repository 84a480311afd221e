#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <gdk/gdk.h>

#include "platform/HotKeys.h"

namespace navora {

// One key combination of the whole display, for as long as this object lives, whichever locks are
// on.
class KeyGrab {
 public:
  // Only the X server knows such grabs.
  static bool isSupported();

  // `onPressed` is called once for every press, however long the keys are held.
  KeyGrab(const HotKey& hotKey, std::function<void()> onPressed);
  ~KeyGrab();
  KeyGrab(const KeyGrab&) = delete;
  KeyGrab& operator=(const KeyGrab&) = delete;

  // 0, or the X server's error; then nothing is grabbed.
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
  // Of the press that was reported last and has not ended.
  std::optional<unsigned> heldKeyCode_;
  gulong keymapHandler_ = 0;
};

}  // namespace navora
