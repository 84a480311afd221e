#pragma once

#include <optional>
#include <string>
#include <vector>

namespace navora {

// What a menu item does. The names are those of the desktop's own commands where there are some.
enum class MenuAction {
  about,
  checkForUpdates,
  enableNotifications,
  quickCapture,
  hide,
  terminate,
  undo,
  redo,
  cut,
  copy,
  paste,
  selectAll,
  reload,
  openInBrowser,
  showWindow,
  performMiniaturize,
  performClose
};

// Who carries an item's action out.
enum class MenuTarget {
  // The MenuDelegate is told.
  delegate,
  // The host does it to the whole application: `hide` and `terminate`.
  application,
  // The host does it to whatever has the keyboard: the edit commands to the focused text, native or
  // in the page; `performMiniaturize` and `performClose` to the window in front.
  responderChain
};

// A letter, digit or sign that is pressed with Command; on a desktop whose main modifier is
// Control, with that one.
struct KeyEquivalent {
  // Lower case; the key that types this character.
  char key = 0;
  bool shift = false;

  bool operator==(const KeyEquivalent&) const = default;
};

struct MenuItem {
  // Empty for a separator.
  std::string title;
  // None: the item only informs and cannot be chosen (a separator has neither action nor title).
  std::optional<MenuAction> action;
  std::optional<KeyEquivalent> keyEquivalent;
  MenuTarget target = MenuTarget::delegate;

  static MenuItem separator() { return {}; }
  bool isSeparator() const { return title.empty() && !action; }

  bool operator==(const MenuItem&) const = default;
};

struct Menu {
  // The system adds its own items to the menu of windows where it knows one.
  enum class Role { plain, windows };

  std::string title;
  std::vector<MenuItem> items;
  Role role = Role::plain;

  bool operator==(const Menu&) const = default;
};

// Learns what the user has chosen, of the items that are aimed at it.
class MenuDelegate {
 public:
  virtual ~MenuDelegate() = default;

  virtual void performMenuAction(MenuAction action) = 0;
};

}  // namespace navora
