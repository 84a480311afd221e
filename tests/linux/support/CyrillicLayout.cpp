#include "linux/support/CyrillicLayout.h"

#include <array>
#include <utility>

#include <gdk/gdkkeysyms.h>

#include "linux/support/MainLoop.h"

#include <X11/XKBlib.h>
#include <gdk/gdkx.h>

namespace navora {
namespace {

constexpr std::array<std::pair<KeySym, KeySym>, 6> letters{{{GDK_KEY_z, GDK_KEY_Cyrillic_ya},
                                                            {GDK_KEY_x, GDK_KEY_Cyrillic_che},
                                                            {GDK_KEY_c, GDK_KEY_Cyrillic_es},
                                                            {GDK_KEY_v, GDK_KEY_Cyrillic_em},
                                                            {GDK_KEY_a, GDK_KEY_Cyrillic_ef},
                                                            {GDK_KEY_n, GDK_KEY_Cyrillic_te}}};

Display* display() {
  return gdk_x11_get_default_xdisplay();
}

KeySym capital(KeySym letter) {
  KeySym lower = 0;
  KeySym upper = 0;
  XConvertCase(letter, &lower, &upper);
  return upper;
}

// Each key has two symbols per layout; the first layout is kept.
void setLetters(bool withSecondLayout) {
  for (const auto& [latin, cyrillic] : letters) {
    std::array<KeySym, 4> symbols{latin, capital(latin), cyrillic, capital(cyrillic)};
    XChangeKeyboardMapping(display(), XKeysymToKeycode(display(), latin), withSecondLayout ? 4 : 2,
                           symbols.data(), 1);
  }
  XSync(display(), False);
}

// GTK follows the active layout through X events.
testing::AssertionResult toolkitTypes(bool cyrillic) {
  return waitUntil([cyrillic] {
    GdkKeymap* keymap = gdk_keymap_get_for_display(gdk_display_get_default());
    guint typed = 0;
    gdk_keymap_translate_keyboard_state(keymap, XKeysymToKeycode(display(), GDK_KEY_z),
                                        static_cast<GdkModifierType>(0), cyrillic ? 1 : 0, &typed,
                                        nullptr, nullptr, nullptr);
    return typed == (cyrillic ? guint{GDK_KEY_Cyrillic_ya} : guint{GDK_KEY_z});
  });
}

}  // namespace

CyrillicLayout::CyrillicLayout() {
  setLetters(true);
  XkbLockGroup(display(), XkbUseCoreKbd, 1);
  XSync(display(), False);
  EXPECT_TRUE(toolkitTypes(true));
}

CyrillicLayout::~CyrillicLayout() {
  XkbLockGroup(display(), XkbUseCoreKbd, 0);
  setLetters(false);
  EXPECT_TRUE(toolkitTypes(false));
}

}  // namespace navora
