#pragma once

#include <vector>

#include "platform/Application.h"
#include "platform/Menu.h"

namespace navora {

// Creates the application's menus and About panel in the current interface language.
class NavoraMenus {
 public:
  // Returns the application, edit, view and window menus.
  static std::vector<Menu> mainMenu();
  static Menu statusMenu();
  // Returns the status menu's line that says that another application has the capture shortcut.
  static MenuItem shortcutTaken();
  static AboutPanelOptions about();
};

}  // namespace navora
