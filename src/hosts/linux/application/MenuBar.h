#pragma once

#include <vector>

#include <gtkmm/menu.h>
#include <gtkmm/menubar.h>
#include <gtkmm/window.h>
#include <sigc++/connection.h>

#include "hosts/linux/application/MenuCommands.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/Menu.h"

namespace navora {

// The main menu as a menu bar, and its keys, with Control for Command.
//
// The keys of the edit commands are first offered to the focused widget; the menu handles only
// those left unhandled, such as undo in a page, for which the engine has no key binding. All other
// keys are accelerators, which take precedence over the focused widget.
class MenuBar {
 public:
  explicit MenuBar(ApplicationCommands commands);
  ~MenuBar();
  MenuBar(const MenuBar&) = delete;
  MenuBar& operator=(const MenuBar&) = delete;

  Gtk::MenuBar& widget() { return bar_; }

  // Replaces all menus. The delegate must outlive them.
  void setMenus(const std::vector<Menu>& menus, MenuDelegate& delegate);

  // Makes the menus' keys work in the window.
  void addMainWindow(Gtk::Window& window);
  // The same, without the keys that concern the page or the frame of the main window.
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
  // Handles the key of an edit command that no widget of the window has handled.
  bool unhandledKeyPressed(const GdkEventKey& event, GtkWindow* window);
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
  // The keys of every window, and those of the main window alone.
  GObjectPtr<GtkAccelGroup> commonKeys_;
  GObjectPtr<GtkAccelGroup> mainWindowKeys_;
  std::vector<sigc::connection> connections_;
};

}  // namespace navora
