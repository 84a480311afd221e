#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sigc++/connection.h>

#include "hosts/linux/application/MenuCommands.h"
#include "hosts/linux/bus/BusObject.h"
#include "hosts/linux/tray/DBusMenu.h"
#include "platform/StatusItem.h"

namespace navora {

class ColorScheme;

// Logs that the desktop has no tray, at most once however often the status item is replaced.
class MissingTrayWarning {
 public:
  void logOnce();

 private:
  bool logged_ = false;
};

// A StatusNotifierItem on the session bus. Registers with the tray (StatusNotifierWatcher) whenever
// one appears, including one that starts later or restarts.
//
// Its object path is fixed, so a process can have one item at a time; the next may be made just
// before this one is destroyed, within one turn of the main loop.
class LinuxStatusItem final : public StatusItem {
 public:
  // All references must outlive the item. `iconThemes` is the folder with the executable's own
  // icons.
  LinuxStatusItem(const StatusItemDescription& description, MenuDelegate& delegate,
                  ApplicationCommands commands, ColorScheme& colorScheme,
                  MissingTrayWarning& missingTray, std::filesystem::path iconThemes);
  ~LinuxStatusItem() override;
  LinuxStatusItem(const LinuxStatusItem&) = delete;
  LinuxStatusItem& operator=(const LinuxStatusItem&) = delete;

  void insertMenuItem(std::size_t index, const MenuItem& item) override;

  // Returns the item's own bus name, different for every item of the process.
  const std::string& busName() const { return busName_; }

 private:
  void exportOn(GObjectPtr<GDBusConnection> bus);
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
  MissingTrayWarning& missingTray_;
  const std::string busName_;
  const std::filesystem::path iconThemes_;
  const bool hasSymbolicIcon_;
  // The IconPixmap value for the desktop's current colour scheme.
  GVariantPtr icon_;
  sigc::connection schemeChanges_;
  GObjectPtr<GCancellable> joining_;
  std::optional<DBusMenu> menu_;
  std::optional<BusObject> object_;
  guint ownedName_ = 0;
  guint trayWatch_ = 0;
};

}  // namespace navora
