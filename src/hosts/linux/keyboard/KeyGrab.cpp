#include "hosts/linux/keyboard/KeyGrab.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <gdk/gdkkeysyms.h>

#include "hosts/linux/system/GLibSupport.h"

#include <X11/XKBlib.h>
#include <gdk/gdkx.h>

namespace navora {

namespace {

// Without the pointer buttons and the keyboard group, which are in the event's state as well.
constexpr unsigned comparedModifiers =
    ShiftMask | LockMask | ControlMask | Mod1Mask | Mod2Mask | Mod3Mask | Mod4Mask | Mod5Mask;

GdkDisplay* gdkDisplay() {
  return gdk_display_get_default();
}

Display* display() {
  return GDK_DISPLAY_XDISPLAY(gdkDisplay());
}

guint keyvalFrom(std::uint16_t keyCode) {
  return keyCode == KeyEvent::spaceKey ? GDK_KEY_space : GDK_KEY_VoidSymbol;
}

// Translates Carbon's modifiers; the main modifier, Command, is Control here.
unsigned modifiersFrom(std::uint32_t carbonModifiers) {
  unsigned modifiers = 0;
  if ((carbonModifiers & HotKey::carbonCommand) != 0) modifiers |= ControlMask;
  if ((carbonModifiers & HotKey::carbonShift) != 0) modifiers |= ShiftMask;
  if ((carbonModifiers & HotKey::carbonOption) != 0) modifiers |= Mod1Mask;
  return modifiers;
}

// Returns the modifier mask of Num Lock, which depends on the keyboard mapping; 0 if it has none.
unsigned numLockModifier() {
  const std::unique_ptr<XModifierKeymap, decltype(&XFreeModifiermap)> map(
      XGetModifierMapping(display()), XFreeModifiermap);
  const KeyCode numLock = XKeysymToKeycode(display(), GDK_KEY_Num_Lock);
  if (numLock == 0) return 0;
  for (int index = 0; index < 8 * map->max_keypermod; ++index) {
    if (map->modifiermap[index] == numLock) return 1U << (index / map->max_keypermod);
  }
  return 0;
}

}  // namespace

bool KeyGrab::isSupported() {
  return GDK_IS_X11_DISPLAY(gdkDisplay());
}

KeyGrab::KeyGrab(const HotKey& hotKey, std::function<void()> onPressed)
    : hotKey_(hotKey), onPressed_(std::move(onPressed)) {
  // Without it auto-repeat sends a release before every repeated press.
  XkbSetDetectableAutoRepeat(display(), True, nullptr);
  status_ = grab();
  if (status_ != 0) return;
  gdk_window_add_filter(gdk_get_default_root_window(), onEvent, this);
  keymapHandler_ = g_signal_connect(gdk_keymap_get_for_display(gdkDisplay()), "keys-changed",
                                    G_CALLBACK(onKeymapChanged), this);
}

KeyGrab::~KeyGrab() {
  if (keymapHandler_ == 0) return;
  g_signal_handler_disconnect(gdk_keymap_get_for_display(gdkDisplay()), keymapHandler_);
  gdk_window_remove_filter(gdk_get_default_root_window(), onEvent, this);
  ungrab();
}

std::vector<KeyGrab::Combination> KeyGrab::combinations() const {
  GdkKeymapKey* keys = nullptr;
  gint count = 0;
  gdk_keymap_get_entries_for_keyval(gdk_keymap_get_for_display(gdkDisplay()),
                                    keyvalFrom(hotKey_.keyCode), &keys, &count);
  const std::unique_ptr<GdkKeymapKey, GFreeDeleter> owner(keys);
  const unsigned modifiers = modifiersFrom(hotKey_.carbonModifiers);
  const unsigned numLock = numLockModifier();
  std::vector<int> codes;
  for (int index = 0; index < count; ++index) {
    const int code = static_cast<int>(keys[index].keycode);
    if (std::ranges::find(codes, code) == codes.end()) codes.push_back(code);
  }
  std::vector<Combination> combinations;
  for (const int code : codes) {
    combinations.push_back({code, modifiers});
    combinations.push_back({code, modifiers | LockMask});
    if (numLock == 0) continue;
    combinations.push_back({code, modifiers | numLock});
    combinations.push_back({code, modifiers | numLock | LockMask});
  }
  return combinations;
}

int KeyGrab::grab() {
  grabbed_ = combinations();
  if (grabbed_.empty()) return BadValue;
  gdk_x11_display_error_trap_push(gdkDisplay());
  for (const auto& [code, modifiers] : grabbed_) {
    XGrabKey(display(), code, modifiers, DefaultRootWindow(display()), False, GrabModeAsync,
             GrabModeAsync);
  }
  XSync(display(), False);
  const int error = gdk_x11_display_error_trap_pop(gdkDisplay());
  if (error != 0) ungrab();
  return error;
}

void KeyGrab::ungrab() {
  gdk_x11_display_error_trap_push(gdkDisplay());
  for (const auto& [code, modifiers] : std::exchange(grabbed_, {}))
    XUngrabKey(display(), code, modifiers, DefaultRootWindow(display()));
  gdk_x11_display_error_trap_pop_ignored(gdkDisplay());
  // Frees the combination for other programs at once.
  gdk_display_flush(gdkDisplay());
}

bool KeyGrab::matches(int keyCode, unsigned state) const {
  return std::ranges::any_of(grabbed_, [&](const Combination& combination) {
    return combination.keyCode == keyCode && combination.modifiers == (state & comparedModifiers);
  });
}

GdkFilterReturn KeyGrab::onEvent(GdkXEvent* event, GdkEvent*, gpointer self) {
  auto& grab = *static_cast<KeyGrab*>(self);
  const auto& key = static_cast<const XEvent*>(event)->xkey;
  if (key.type == KeyRelease) {
    // Only the release of the key itself ends a press; the modifiers may change meanwhile.
    if (grab.heldKeyCode_ == key.keycode) grab.heldKeyCode_.reset();
    return GDK_FILTER_CONTINUE;
  }
  if (key.type != KeyPress || !grab.matches(static_cast<int>(key.keycode), key.state))
    return GDK_FILTER_CONTINUE;
  if (std::exchange(grab.heldKeyCode_, key.keycode) != key.keycode) grab.onPressed_();
  return GDK_FILTER_REMOVE;
}

void KeyGrab::onKeymapChanged(GdkKeymap*, gpointer self) {
  auto& grab = *static_cast<KeyGrab*>(self);
  grab.ungrab();
  // If another program has grabbed the combination meanwhile, the next change tries again.
  grab.grab();
}

}  // namespace navora
