#pragma once

#include <vector>

#include "platform/AboutPanel.h"
#include "platform/Menu.h"

namespace navora {

// The application's menus and its About panel, in the interface's current language.
class NavoraMenus {
 public:
  // Application, edit, view and window.
  static std::vector<Menu> mainMenu();
  static Menu statusMenu();
  // Says in the status menu that another application has the capture shortcut.
  static MenuItem shortcutTaken();
  static AboutPanelOptions about();
};

}  // namespace navora
