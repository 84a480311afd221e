#include "hosts/linux/application/MenuBar.h"

#include <utility>
#include <variant>

#include <gtkmm/accellabel.h>
#include <gtkmm/separatormenuitem.h>

#include "hosts/linux/keyboard/KeyEvents.h"
#include "hosts/linux/keyboard/ModifierNames.h"

namespace navora {
namespace {

GdkModifierType modifiersOf(const KeyEquivalent& key) {
  return static_cast<GdkModifierType>(GDK_CONTROL_MASK | (key.shift ? GDK_SHIFT_MASK : 0));
}

guint keyvalOf(const KeyEquivalent& key) {
  return static_cast<guint>(key.key);
}

bool matches(const GdkEventKey& event, const KeyEquivalent& key) {
  return (event.state & gtk_accelerator_get_default_mod_mask()) == modifiersOf(key) &&
         latinKeyFrom(event) == keyvalOf(key);
}

// A panel has neither a page nor a frame with a minimise button, so the keys of the actions on them
// are active in the main window only.
bool isMainWindowAction(const MenuAction& action) {
  return action == MenuAction(DelegateAction::reload) ||
         action == MenuAction(DelegateAction::openInBrowser) ||
         action == MenuAction(WindowAction::performMiniaturize);
}

void performInWindow(WindowAction action, GtkWindow* window) {
  switch (action) {
    case WindowAction::performMiniaturize:
      return gtk_window_iconify(window);
    case WindowAction::performClose:
      return gtk_window_close(window);
  }
}

}  // namespace

struct MenuBar::ShortcutData {
  MenuBar* bar;
  MenuItem item;
};

MenuBar::MenuBar(ApplicationCommands commands)
    : commands_(std::move(commands)),
      commonKeys_(GObjectPtr<GtkAccelGroup>::adopt(gtk_accel_group_new())),
      mainWindowKeys_(GObjectPtr<GtkAccelGroup>::adopt(gtk_accel_group_new())) {
  bar_.show();
}

MenuBar::~MenuBar() {
  removeKeys();
  for (auto& connection : connections_)
    connection.disconnect();
}

void MenuBar::setMenus(const std::vector<Menu>& menus, MenuDelegate& delegate) {
  // An open menu would stay on the screen without its items.
  bar_.deactivate();
  removeKeys();
  delegate_ = &delegate;
  // A managed widget survives its removal from a container, which Container::remove() is for.
  for (Gtk::Widget* child : bar_.get_children())
    gtk_widget_destroy(child->gobj());
  for (const Menu& menu : menus)
    bar_.append(*makeTopLevelItem(menu));
  bar_.show_all_children();
}

Gtk::MenuItem* MenuBar::makeTopLevelItem(const Menu& menu) {
  auto* top = Gtk::manage(new Gtk::MenuItem(withModifierNames(menu.title)));
  auto* submenu = Gtk::manage(new Gtk::Menu());
  for (const MenuItem& item : menu.items) {
    submenu->append(*makeItem(item));
    if (item.action && item.keyEquivalent) addKey(item);
  }
  top->set_submenu(*submenu);
  return top;
}

Gtk::MenuItem* MenuBar::makeItem(const MenuItem& item) {
  if (item.isSeparator()) return Gtk::manage(new Gtk::SeparatorMenuItem());
  auto* widget = Gtk::manage(new Gtk::MenuItem(withModifierNames(item.title)));
  widget->set_sensitive(item.action.has_value());
  if (item.keyEquivalent) {
    // Only shown: a real accelerator would take the edit keys away from the focused text.
    gtk_accel_label_set_accel(GTK_ACCEL_LABEL(widget->get_child()->gobj()),
                              keyvalOf(*item.keyEquivalent), modifiersOf(*item.keyEquivalent));
  }
  widget->signal_activate().connect([this, item] {
    // The action may replace the menus, which destroys this closure and its captures.
    const MenuItem chosen = item;  // NOLINT(performance-unnecessary-copy-initialization)
    perform(chosen, GTK_WINDOW(bar_.get_toplevel()->gobj()));
  });
  return widget;
}

void MenuBar::addKey(const MenuItem& item) {
  if (std::holds_alternative<EditAction>(*item.action)) {
    editItems_.push_back(item);
    return;
  }
  const auto release = [](gpointer data, GClosure*) { delete static_cast<ShortcutData*>(data); };
  GtkAccelGroup* group =
      isMainWindowAction(*item.action) ? mainWindowKeys_.get() : commonKeys_.get();
  GClosure* closure = g_cclosure_new(G_CALLBACK(onShortcut), new ShortcutData{this, item}, release);
  gtk_accel_group_connect(group, keyvalOf(*item.keyEquivalent), modifiersOf(*item.keyEquivalent),
                          GTK_ACCEL_VISIBLE, closure);
  shortcuts_.push_back({group, closure});
}

void MenuBar::removeKeys() {
  editItems_.clear();
  for (const auto& [group, closure] : std::exchange(shortcuts_, {}))
    gtk_accel_group_disconnect(group, closure);
}

void MenuBar::addMainWindow(Gtk::Window& window) {
  gtk_window_add_accel_group(window.gobj(), mainWindowKeys_.get());
  addWindow(window);
}

void MenuBar::addPanel(Gtk::Window& window) {
  addWindow(window);
}

void MenuBar::addWindow(Gtk::Window& window) {
  gtk_window_add_accel_group(window.gobj(), commonKeys_.get());
  connections_.push_back(
      window.signal_key_press_event().connect([this, native = window.gobj()](GdkEventKey* event) {
        return unhandledKeyPressed(*event, native);
      }));
}

gboolean MenuBar::onShortcut(GtkAccelGroup*, GObject* window, guint, GdkModifierType,
                             gpointer data) {
  // The action may replace the menus, which deletes the data.
  const auto [bar, item] = *static_cast<const ShortcutData*>(data);
  bar->perform(item, GTK_WINDOW(window));
  return TRUE;
}

bool MenuBar::unhandledKeyPressed(const GdkEventKey& event, GtkWindow* window) {
  for (const MenuItem& item : editItems_) {
    if (!matches(event, *item.keyEquivalent)) continue;
    perform(item, window);
    return true;
  }
  return false;
}

void MenuBar::perform(const MenuItem& item, GtkWindow* window) {
  struct Performer {
    MenuBar& bar;
    GtkWindow* window;

    void operator()(DelegateAction action) const { bar.delegate_->performMenuAction(action); }
    void operator()(ApplicationAction action) const { bar.commands_.perform(action); }
    void operator()(EditAction action) const {
      performEditAction(action, gtk_window_get_focus(window));
    }
    void operator()(WindowAction action) const { performInWindow(action, window); }
  };
  std::visit(Performer{*this, window}, *item.action);
}

}  // namespace navora
