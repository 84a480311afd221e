#pragma once

#include <vector>

#import <AppKit/AppKit.h>

#include "hosts/macos/application/MenuTarget.h"
#include "platform/Menu.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// AppKit's menus do not keep the target of their items: it must be kept as long as they are shown.
NSMenuItem* toNSMenuItem(const MenuItem& item, NavoraMenuTarget* target);
NSMenu* toNSMenu(const Menu& menu, NavoraMenuTarget* target);

// The main menu of the application.
class MacMenus {
 public:
  MacMenus();
  ~MacMenus();
  MacMenus(const MacMenus&) = delete;
  MacMenus& operator=(const MacMenus&) = delete;

  // Replaces the whole main menu. The delegate must outlive this object.
  void setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate);

 private:
  NavoraMenuTarget* target_;
};

}  // namespace navora

NS_ASSUME_NONNULL_END
