#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "end_to_end/driver/BusConnection.h"
#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// One of both.
struct BusAnswer {
  GVariantPtr value;
  std::string error;
};

// Stands for the desktop's tray: takes items, asks them and hears their signals, on the session bus
// and from the main loop of the test.
class StatusTray {
 public:
  enum class Manner { friendly, refusing };

  struct Entry {
    std::int32_t id = 0;
    std::string label;
    std::string type = "standard";
    bool enabled = true;
  };
  struct Layout {
    std::uint32_t revision = 0;
    std::vector<Entry> entries;
  };

  explicit StatusTray(Manner manner = Manner::friendly);
  ~StatusTray();
  StatusTray(const StatusTray&) = delete;
  StatusTray& operator=(const StatusTray&) = delete;

  // Whether an item has registered under this name on the bus.
  bool has(const std::string& name) const;
  bool isOnBus(const std::string& name) { return bus_.nameHasOwner(name); }
  // How often any item has sent the signal.
  int heard(const std::string& signal) const;

  BusAnswer ask(const std::string& name, const char* path, const char* interface,
                const char* method, GVariant* parameters);
  // Null if there is none.
  GVariantPtr property(const std::string& name, const char* path, const char* interface,
                       const char* property);
  Layout layout(const std::string& name, const char* path);

 private:
  static void onCall(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self);
  static void onSignal(GDBusConnection*, const char*, const char*, const char*, const char* signal,
                       GVariant*, gpointer self);

  const Manner manner_;
  driver::BusConnection bus_;
  GDBusNodeInfo* node_;
  guint object_ = 0;
  guint subscription_ = 0;
  std::vector<std::string> names_;
  std::map<std::string, int> signals_;
};

}  // namespace navora
