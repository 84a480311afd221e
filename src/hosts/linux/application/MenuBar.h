#pragma once

#include <vector>

#include <gtkmm/menu.h>
#include <gtkmm/menubar.h>
#include <gtkmm/window.h>
#include <sigc++/connection.h>

#include "hosts/linux/application/ApplicationCommands.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/Menu.h"

namespace navora {

// The main menu, to be put above the content of the main window, and its keys, with Control for the
// main modifier.
//
// The keys of the edit commands belong to the text that has the keyboard: the menu acts on them
// only where nothing else did, as on undo in a page, for which the engine has no key. All others
// are the menu's, whatever has the keyboard.
class MenuBar {
 public:
  explicit MenuBar(ApplicationCommands commands);
  ~MenuBar();
  MenuBar(const MenuBar&) = delete;
  MenuBar& operator=(const MenuBar&) = delete;

  Gtk::MenuBar& widget() { return bar_; }

  // Replaces everything that was there. The delegate must outlive the menus.
  void setMenus(const std::vector<Menu>& menus, MenuDelegate& delegate);

  // The keys of the menus work in these windows, once each. In a panel only those that are not
  // about the page or the frame of the main window.
  void addMainWindow(Gtk::Window& window);
  void addPanel(Gtk::Window& window);

 private:
  struct ShortcutData;

  Gtk::MenuItem* makeTopLevelItem(const Menu& menu);
  Gtk::MenuItem* makeItem(const MenuItem& item);
  void addKey(const MenuItem& item);
  void removeKeys();
  void addWindow(Gtk::Window& window);
  static gboolean onShortcut(GtkAccelGroup*, GObject* window, guint, GdkModifierType,
                             gpointer data);
  // A key that nobody wanted.
  bool keyLeftOver(const GdkEventKey& event, GtkWindow* window);
  void perform(const MenuItem& item, GtkWindow* window);

  ApplicationCommands commands_;
  MenuDelegate* delegate_ = nullptr;
  Gtk::MenuBar bar_;
  struct Shortcut {
    GtkAccelGroup* group;
    GClosure* closure;
  };
  std::vector<Shortcut> shortcuts_;
  std::vector<MenuItem> editItems_;
  // Of every window, and of the main window alone.
  GObjectPtr<GtkAccelGroup> commonKeys_;
  GObjectPtr<GtkAccelGroup> mainWindowKeys_;
  std::vector<sigc::connection> connections_;
};

}  // namespace navora
