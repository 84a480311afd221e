#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sigc++/connection.h>

#include "hosts/linux/application/ApplicationCommands.h"
#include "hosts/linux/bus/BusObject.h"
#include "hosts/linux/tray/DBusMenu.h"
#include "platform/StatusItem.h"

namespace navora {

class ColorScheme;

// Says on standard error, once in its life, that the desktop has no place for status items.
class MissingTray {
 public:
  void tell();

 private:
  bool told_ = false;
};

// A StatusNotifierItem on the session bus. It comes into the tray whenever there is one: also into
// one that starts later, or starts again.
//
// The process can have one at a time; another one may be made before this one goes, in the same
// turn of the main loop.
class LinuxStatusItem final : public StatusItem {
 public:
  // All references must outlive the item.
  LinuxStatusItem(const StatusItemDescription& description, MenuDelegate& delegate,
                  ApplicationCommands commands, ColorScheme& colorScheme, MissingTray& missingTray);
  ~LinuxStatusItem() override;
  LinuxStatusItem(const LinuxStatusItem&) = delete;
  LinuxStatusItem& operator=(const LinuxStatusItem&) = delete;

  void insertMenuItem(std::size_t index, const MenuItem& item) override;

  // On the bus; another one for every item of the process.
  const std::string& busName() const { return busName_; }

 private:
  void join(GObjectPtr<GDBusConnection> bus);
  void drawIcon();
  void call(const char* method, GDBusMethodInvocation* invocation);
  GVariant* property(const char* name) const;
  void choose(const MenuItem& item);
  static void onTrayAppeared(GDBusConnection* bus, const char*, const char*, gpointer self);
  static void onTrayVanished(GDBusConnection*, const char*, gpointer self);

  StatusItemDescription description_;
  MenuDelegate& delegate_;
  const ApplicationCommands commands_;
  ColorScheme& colorScheme_;
  MissingTray& missingTray_;
  const std::string busName_;
  // For the desktop's present look.
  GVariantPtr icon_;
  sigc::connection schemeChanges_;
  GObjectPtr<GCancellable> joining_;
  std::optional<DBusMenu> menu_;
  std::optional<BusObject> object_;
  guint ownedName_ = 0;
  guint trayWatch_ = 0;
};

}  // namespace navora
