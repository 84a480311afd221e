#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/linux/bus/BusObject.h"
#include "platform/Menu.h"
#include "support/Lifetime.h"

namespace navora {

// Exports a menu without submenus on a message bus (com.canonical.dbusmenu): the tray shows it and
// reports the clicks.
class DBusMenu {
 public:
  static constexpr const char* path = "/MenuBar";

  // Calls `onChosen` for each chosen item with an action; it may destroy the menu.
  DBusMenu(GDBusConnection* bus, const Menu& menu, std::function<void(const MenuItem&)> onChosen);
  DBusMenu(const DBusMenu&) = delete;
  DBusMenu& operator=(const DBusMenu&) = delete;

  // Inserts the item at the index, or at the end if there are fewer items.
  void insert(std::size_t index, const MenuItem& item);

 private:
  // Never reused for another item.
  using Id = std::int32_t;
  struct Entry {
    Id id;
    MenuItem item;
  };
  struct Method {
    const char* name;
    void (DBusMenu::*answer)(GVariant* parameters, GDBusMethodInvocation* invocation);
  };
  static const std::vector<Method>& methods();

  void call(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation);
  void getLayout(GVariant* parameters, GDBusMethodInvocation* invocation);
  void getGroupProperties(GVariant* parameters, GDBusMethodInvocation* invocation);
  void getProperty(GVariant* parameters, GDBusMethodInvocation* invocation);
  void event(GVariant* parameters, GDBusMethodInvocation* invocation);
  void eventGroup(GVariant* parameters, GDBusMethodInvocation* invocation);
  void aboutToShow(GVariant* parameters, GDBusMethodInvocation* invocation);
  void aboutToShowGroup(GVariant* parameters, GDBusMethodInvocation* invocation);

  bool has(Id id) const { return id == root || find(id) != nullptr; }
  const Entry* find(Id id) const;
  bool refuseUnknown(Id id, GDBusMethodInvocation* invocation) const;
  GVariant* propertiesOf(Id id) const;
  void choose(Id id, const std::string& event);

  static constexpr Id root = 0;

  std::function<void(const MenuItem&)> onChosen_;
  std::vector<Entry> entries_;
  Id lastId_ = root;
  guint32 revision_ = 1;
  BusObject object_;
  Lifetime lifetime_;
};

}  // namespace navora
