#pragma once

#include <functional>
#include <memory>
#include <string>

#include <gio/gio.h>

#include "hosts/linux/bus/PortalRequest.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/HotKeys.h"

namespace navora {

// One key combination of the whole desktop where programs may not grab keys themselves, for as long
// as this object lives. The desktop asks the user, who may choose another combination or none.
class GlobalShortcutsPortal {
 public:
  // Whether the desktop has such a portal. Asks it and waits for the answer, briefly.
  static bool isAvailable();

  // `description` is what the desktop shows for the shortcut. `onPressed` is called for every
  // press. A refusal is told on standard error; the combination then does nothing.
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
  // An object path; empty before the portal has made the session.
  std::string session_;
  guint activations_ = 0;
};

// The combination as the portal writes it: "CTRL+SHIFT+space". Empty for a key without a name
// there.
std::string shortcutTrigger(const HotKey& hotKey);

}  // namespace navora
