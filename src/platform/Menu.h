#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace navora {

// The actions of menu items, one enumeration per kind of target. The names follow the platform's
// own commands where it has them. Code that handles an enumeration switches over it without
// `default`, so that a new action does not compile until it is handled everywhere.

// Actions that the core performs: passed to the MenuDelegate.
enum class DelegateAction {
  about,
  checkForUpdates,
  enableNotifications,
  quickCapture,
  reload,
  openInBrowser,
  showWindow
};

// Actions that the host applies to the whole application.
enum class ApplicationAction { hide, terminate };

// Actions that the host applies to the focused text, native or in the page.
enum class EditAction { undo, redo, cut, copy, paste, selectAll };

// Actions that the host applies to the frontmost window.
enum class WindowAction { performMiniaturize, performClose };

using MenuAction = std::variant<DelegateAction, ApplicationAction, EditAction, WindowAction>;

// A character key pressed together with the desktop's main modifier (Command or Control).
struct KeyEquivalent {
  // The lower-case character that the key types.
  char key = 0;
  bool shift = false;

  bool operator==(const KeyEquivalent&) const = default;
};

struct MenuItem {
  // Empty for a separator.
  std::string title;
  // If nullopt, the item is disabled: a separator, or a line of information.
  std::optional<MenuAction> action;
  std::optional<KeyEquivalent> keyEquivalent;

  static MenuItem separator() { return {}; }
  bool isSeparator() const { return title.empty() && !action; }

  bool operator==(const MenuItem&) const = default;
};

struct Menu {
  // On platforms with a standard window menu, the system adds its own items to the `windows` menu.
  enum class Role { plain, windows };

  std::string title;
  std::vector<MenuItem> items;
  Role role = Role::plain;

  bool operator==(const Menu&) const = default;
};

// Performs the core's menu actions. Called on the main thread.
class MenuDelegate {
 public:
  virtual ~MenuDelegate() = default;

  virtual void performMenuAction(DelegateAction action) = 0;
};

}  // namespace navora
