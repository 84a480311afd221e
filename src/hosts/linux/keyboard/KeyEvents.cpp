#include "hosts/linux/keyboard/KeyEvents.h"

#include <memory>

#include <gdk/gdkkeysyms.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {
namespace {

bool isAscii(guint keyval) {
  return keyval < 0x80;
}

std::uint16_t keyCodeFrom(guint keyval) {
  switch (keyval) {
    case GDK_KEY_Return:
    case GDK_KEY_ISO_Enter:
      return KeyEvent::returnKey;
    case GDK_KEY_KP_Enter:
      return KeyEvent::keypadEnterKey;
    case GDK_KEY_Escape:
      return KeyEvent::escapeKey;
    case GDK_KEY_space:
    // The space bar with Shift or a third-level modifier in some layouts.
    case GDK_KEY_nobreakspace:
      return KeyEvent::spaceKey;
    default:
      return KeyEvent::otherKey;
  }
}

KeyEvent translated(const GdkEventKey& event, std::uint32_t control, std::uint32_t super) {
  KeyEvent key{keyCodeFrom(event.keyval), 0};
  const auto add = [&](guint mask, std::uint32_t modifier) {
    if ((event.state & mask) != 0) key.modifiers |= modifier;
  };
  add(GDK_SHIFT_MASK, KeyEvent::shift);
  add(GDK_LOCK_MASK, KeyEvent::capsLock);
  add(GDK_CONTROL_MASK, control);
  add(GDK_MOD1_MASK, KeyEvent::option);
  add(GDK_SUPER_MASK, super);
  return key;
}

}  // namespace

KeyEvent keyEventFrom(const GdkEventKey& event) {
  return translated(event, KeyEvent::control, KeyEvent::command);
}

KeyEvent shortcutEventFrom(const GdkEventKey& event) {
  return translated(event, KeyEvent::command, KeyEvent::control);
}

guint latinKeyFrom(const GdkEventKey& event) {
  const guint typed = gdk_keyval_to_lower(event.keyval);
  if (isAscii(typed)) return typed;
  GdkKeymapKey* keysFound = nullptr;
  guint* valuesFound = nullptr;
  int count = 0;
  gdk_keymap_get_entries_for_keycode(gdk_keymap_get_for_display(gdk_display_get_default()),
                                     event.hardware_keycode, &keysFound, &valuesFound, &count);
  const std::unique_ptr<GdkKeymapKey, GFreeDeleter> keys(keysFound);
  const std::unique_ptr<guint, GFreeDeleter> values(valuesFound);
  for (int index = 0; index < count; ++index) {
    const guint value = valuesFound[index];
    if (keysFound[index].level == 0 && value != GDK_KEY_VoidSymbol && value != 0 && isAscii(value))
      return value;
  }
  return typed;
}

}  // namespace navora
