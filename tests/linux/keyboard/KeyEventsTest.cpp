#include <gdk/gdkkeysyms.h>
#include <gtest/gtest.h>

#include "hosts/linux/keyboard/KeyEvents.h"

namespace navora {
namespace {

GdkEventKey pressed(guint keyval, guint state = 0) {
  GdkEventKey event{};
  event.type = GDK_KEY_PRESS;
  event.keyval = keyval;
  event.state = state;
  return event;
}

TEST(KeyEventsTest, TranslatesKeyCodes) {
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_Return)).keyCode, KeyEvent::returnKey);
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_KP_Enter)).keyCode, KeyEvent::keypadEnterKey);
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_Escape)).keyCode, KeyEvent::escapeKey);
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_space)).keyCode, KeyEvent::spaceKey);
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_a)).keyCode, KeyEvent::otherKey);
}

TEST(KeyEventsTest, TranslatesModifiers) {
  const auto modifiers = [](guint state) {
    return keyEventFrom(pressed(GDK_KEY_Return, state)).modifiers;
  };
  EXPECT_EQ(modifiers(0), 0U);
  EXPECT_EQ(modifiers(GDK_CONTROL_MASK), KeyEvent::control);
  EXPECT_EQ(modifiers(GDK_SHIFT_MASK | GDK_MOD1_MASK), KeyEvent::shift | KeyEvent::option);
  EXPECT_EQ(modifiers(GDK_SUPER_MASK), KeyEvent::command);
  EXPECT_EQ(modifiers(GDK_LOCK_MASK), KeyEvent::capsLock);
  EXPECT_EQ(modifiers(GDK_MOD2_MASK | GDK_BUTTON1_MASK), 0U);
}

TEST(KeyEventsTest, ReportsControlAsCommandInShortcuts) {
  const auto event = shortcutEventFrom(pressed(GDK_KEY_space, GDK_CONTROL_MASK | GDK_SHIFT_MASK));
  EXPECT_EQ(event, (KeyEvent{KeyEvent::spaceKey, KeyEvent::command | KeyEvent::shift}));
  EXPECT_EQ(shortcutEventFrom(pressed(GDK_KEY_space, GDK_SUPER_MASK)).modifiers, KeyEvent::control);
}

TEST(KeyEventsTest, FindsTheLatinLetterOfACyrillicKey) {
  EXPECT_EQ(latinKeyFrom(pressed(GDK_KEY_Z, GDK_SHIFT_MASK)), static_cast<guint>(GDK_KEY_z));
  EXPECT_EQ(latinKeyFrom(pressed(GDK_KEY_BackSpace)), static_cast<guint>(GDK_KEY_BackSpace));
  GdkKeymapKey* keys = nullptr;
  int count = 0;
  ASSERT_NE(gdk_keymap_get_entries_for_keyval(gdk_keymap_get_for_display(gdk_display_get_default()),
                                              GDK_KEY_z, &keys, &count),
            FALSE);
  GdkEventKey cyrillic = pressed(GDK_KEY_Cyrillic_ya, GDK_CONTROL_MASK);
  cyrillic.hardware_keycode = static_cast<guint16>(keys[0].keycode);
  g_free(keys);
  EXPECT_EQ(latinKeyFrom(cyrillic), static_cast<guint>(GDK_KEY_z));
}

}  // namespace
}  // namespace navora
