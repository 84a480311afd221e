#pragma once

#include <functional>
#include <memory>
#include <string>

#include <gio/gio.h>

#include "hosts/linux/bus/PortalRequest.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/HotKeys.h"

namespace navora {

// A system-wide shortcut through xdg-desktop-portal's GlobalShortcuts, for desktops where programs
// cannot grab keys. The desktop asks the user, who may choose another combination or refuse. The
// destructor closes the session and withdraws a pending request.
class GlobalShortcutsPortal {
 public:
  // Returns whether the desktop has the portal. Blocks for at most two seconds.
  static bool isAvailable();

  // Requests the shortcut, shown by the desktop with `description`; calls `onPressed` for every
  // press, from the main loop. A refusal is logged to standard error; `onPressed` is then never
  // called.
  GlobalShortcutsPortal(const HotKey& hotKey, const std::string& description,
                        std::function<void()> onPressed);
  ~GlobalShortcutsPortal();
  GlobalShortcutsPortal(const GlobalShortcutsPortal&) = delete;
  GlobalShortcutsPortal& operator=(const GlobalShortcutsPortal&) = delete;

 private:
  static void onActivated(GDBusConnection*, const char*, const char*, const char*, const char*,
                          GVariant* parameters, gpointer self);
  void createSession();
  void sessionCreated(GVariant* results);
  void bindShortcut();

  const std::string trigger_;
  const std::string description_;
  const std::function<void()> onPressed_;
  GObjectPtr<GDBusConnection> bus_;
  std::unique_ptr<PortalRequest> request_;
  // The session's object path; empty until the portal has created it.
  std::string session_;
  guint activations_ = 0;
};

// Returns the combination in the syntax that the GlobalShortcuts portal takes for triggers, such as
// "CTRL+SHIFT+space"; empty for a key that has no name here.
std::string shortcutTrigger(const HotKey& hotKey);

}  // namespace navora
